#include "HeroModel.h"

#include "AppModel.h"
#include "Catalog.h"
#include "QtText.h"

namespace quellton {

namespace {

const Visualizer& shown(const AppModel& model) {
    const std::string& id = model.hoverID() ? *model.hoverID() : model.currentID();
    const Visualizer* v = Catalog::byID(id);
    return v ? *v : model.current();
}

}  // namespace

HeroModel::HeroModel(AppModel& model, QObject* parent) : QObject(parent), model_(model) {
    connect(&model_, &AppModel::currentIDChanged, this, &HeroModel::changed);
    connect(&model_, &AppModel::hoverIDChanged, this, &HeroModel::changed);
}

QString HeroModel::shownID() const { return qtText(shown(model_).id); }
QString HeroModel::name() const { return qtText(shown(model_).name); }
QString HeroModel::category() const { return qtText(categoryTitle(shown(model_).category)).toUpper(); }

bool HeroModel::previewing() const { return model_.hoverID() && *model_.hoverID() != model_.currentID(); }

QString HeroModel::hint() const {
    return previewing() ? QStringLiteral("Klicken, um es als Hintergrund zu setzen")
                        : QStringLiteral("Läuft als Hintergrund · klick hinein für eine Welle");
}

}  // namespace quellton
