#pragma once

#include <QAbstractListModel>

#include <map>
#include <vector>

#include "SidebarItem.h"

namespace quellton {

class AppModel;

// The cards of the detail column for one filter, in catalog order, kept live: a card that joins or
// leaves the Mix while the Mix is shown is inserted at or removed from its own place.
class CardModel : public QAbstractListModel {
    Q_OBJECT
public:
    enum Role { IdRole = Qt::UserRole + 1, NameRole, CategoryRole, CurrentRole, InMixRole, ThumbnailRole };

    explicit CardModel(AppModel& model, QObject* parent = nullptr);

    void setFilter(const SidebarItem& filter);
    const SidebarItem& filter() const { return filter_; }
    const std::vector<const Visualizer*>& items() const { return items_; }

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

    // "image://thumbnail/<id>/<image key>", or "" while the card has no picture.
    static QString thumbnailUrl(const std::string& id, const AppModel& model);

signals:
    void countChanged();

private:
    void syncTo(const std::vector<const Visualizer*>& wanted);
    void refresh(int role);
    void refreshThumbnails();

    AppModel& model_;
    SidebarItem filter_;
    std::vector<const Visualizer*> items_;
    std::map<std::string, qint64> shownPictures_;  // id -> key of the picture the view was told of
};

}  // namespace quellton
