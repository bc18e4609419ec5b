#include "Gallery.h"

#include "AppModel.h"
#include "QtText.h"

namespace quellton {

Gallery::Gallery(AppModel& model, QObject* parent)
    : QObject(parent), model_(model), sidebar_(model), cards_(model), hero_(model), controls_(model) {
    connect(&cards_, &CardModel::countChanged, this, &Gallery::subtitleChanged);
    connect(this, &Gallery::selectionChanged, this, &Gallery::windowTitleChanged);
    connect(this, &Gallery::subtitleChanged, this, &Gallery::windowTitleChanged);
}

void Gallery::select(int row) {
    if (row < -1 || row >= sidebar_.rowCount()) row = -1;
    if (row == selectedRow_) return;
    selectedRow_ = row;
    cards_.setFilter(SidebarModel::itemAt(row));
    emit selectionChanged();
}

void Gallery::reset() {
    if (model_.hoverID()) model_.setHoverID(std::nullopt);
    select(0);
}

QString Gallery::title() const { return qtText(cards_.filter().title()); }
QString Gallery::subtitle() const { return qtText(countSubtitle(cards_.items().size())); }
QString Gallery::windowTitle() const { return title() + QStringLiteral(" — ") + subtitle(); }

void Gallery::chooseCard(const QString& id) { model_.setCurrentIDText(id); }
void Gallery::toggleMix(const QString& id) { model_.toggleMix(id.toStdString()); }
void Gallery::enterCard(const QString& id) { model_.setHoverIDText(id); }

void Gallery::leaveCard(const QString& id) {
    if (model_.hoverIDText() == id) model_.setHoverID(std::nullopt);
}

}  // namespace quellton
