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

HeroModel::HeroModel(AppModel& model, QObject* parent) : QObject(parent), model_(model), shown_(qtText(shown(model).id)) {
    connect(&model_, &AppModel::currentIDChanged, this, &HeroModel::update);
    connect(&model_, &AppModel::hoverIDChanged, this, &HeroModel::update);
}

void HeroModel::update() {
    emit changed();
    const QString now = qtText(shown(model_).id);
    if (now == shown_) return;
    shown_ = now;
    emit shownIDChanged();
}

QString HeroModel::shownID() const { return shown_; }
QString HeroModel::name() const { return qtText(shown(model_).name); }
QString HeroModel::category() const { return qtText(categoryTitle(shown(model_).category)).toUpper(); }

bool HeroModel::previewing() const { return model_.hoverID() && *model_.hoverID() != model_.currentID(); }

QString HeroModel::hint() const {
    return previewing() ? QStringLiteral("Klicken, um es als Hintergrund zu setzen")
                        : QStringLiteral("Läuft als Hintergrund · klick hinein für eine Welle");
}

}  // namespace quellton
