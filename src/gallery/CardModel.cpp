#include "CardModel.h"

#include <functional>

#include "AppModel.h"
#include "QtText.h"

namespace quellton {

CardModel::CardModel(AppModel& model, QObject* parent) : QAbstractListModel(parent), model_(model) {
    items_ = detailItems(filter_, model_.mix());
    connect(&model_, &AppModel::currentIDChanged, this, [this] { refresh(CurrentRole); });
    connect(&model_, &AppModel::mixChanged, this, [this] {
        refresh(InMixRole);
        if (filter_.kind == SidebarItem::Kind::mix) syncTo(detailItems(filter_, model_.mix()));
    });
    connect(&model_, &AppModel::thumbnailsChanged, this, &CardModel::refreshThumbnails);
    for (const auto& [id, image] : model_.thumbnails()) shownPictures_[id] = image.cacheKey();
}

void CardModel::setFilter(const SidebarItem& filter) {
    if (filter == filter_) return;
    beginResetModel();
    filter_ = filter;
    items_ = detailItems(filter_, model_.mix());
    endResetModel();
    emit countChanged();
}

// Both lists follow catalog order (pointers into the catalog compare in that order), so one walk
// finds every card to remove and every card to insert.
void CardModel::syncTo(const std::vector<const Visualizer*>& wanted) {
    const std::less<const Visualizer*> before;
    const std::size_t oldCount = items_.size();
    std::size_t row = 0, w = 0;
    while (row < items_.size() || w < wanted.size()) {
        if (w < wanted.size() && (row == items_.size() || before(wanted[w], items_[row]))) {
            beginInsertRows({}, int(row), int(row));
            items_.insert(items_.begin() + std::ptrdiff_t(row), wanted[w]);
            endInsertRows();
            ++row;
            ++w;
        } else if (w == wanted.size() || before(items_[row], wanted[w])) {
            beginRemoveRows({}, int(row), int(row));
            items_.erase(items_.begin() + std::ptrdiff_t(row));
            endRemoveRows();
        } else {
            ++row;
            ++w;
        }
    }
    if (items_.size() != oldCount) emit countChanged();
}

void CardModel::refresh(int role) {
    if (!items_.empty()) emit dataChanged(index(0), index(int(items_.size()) - 1), {role});
}

void CardModel::refreshThumbnails() {
    std::map<std::string, qint64> now;
    for (const auto& [id, image] : model_.thumbnails()) now[id] = image.cacheKey();
    for (std::size_t row = 0; row < items_.size(); ++row) {
        const std::string& id = items_[row]->id;
        const auto was = shownPictures_.find(id);
        const auto is = now.find(id);
        const bool same = (was == shownPictures_.end()) == (is == now.end()) &&
                          (is == now.end() || was->second == is->second);
        if (!same) emit dataChanged(index(int(row)), index(int(row)), {ThumbnailRole});
    }
    shownPictures_ = std::move(now);
}

QString CardModel::thumbnailUrl(const std::string& id, const AppModel& model) {
    const auto it = model.thumbnails().find(id);
    if (it == model.thumbnails().end()) return {};
    return QStringLiteral("image://thumbnail/%1/%2").arg(qtText(id)).arg(it->second.cacheKey());
}

int CardModel::rowCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : int(items_.size()); }

QVariant CardModel::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid)) return {};
    const Visualizer& v = *items_[std::size_t(index.row())];
    switch (role) {
    case IdRole: return qtText(v.id);
    case Qt::DisplayRole:
    case NameRole: return qtText(v.name);
    case CategoryRole: return qtText(categoryTitle(v.category));
    case CurrentRole: return model_.currentID() == v.id;
    case InMixRole: return model_.mix().count(v.id) > 0;
    case ThumbnailRole: return thumbnailUrl(v.id, model_);
    }
    return {};
}

QHash<int, QByteArray> CardModel::roleNames() const {
    return {{IdRole, "visualizerId"}, {NameRole, "name"},   {CategoryRole, "categoryTitle"},
            {CurrentRole, "current"}, {InMixRole, "inMix"}, {ThumbnailRole, "thumbnail"}};
}

}  // namespace quellton
