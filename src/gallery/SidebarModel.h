#pragma once

#include <QAbstractListModel>

#include "SidebarItem.h"

namespace quellton {

class AppModel;

// The sidebar's rows: "Bibliothek" with "Alle" and "Mein Mix", then "Kategorien" with one row per
// category, each with its symbol and a live count.
class SidebarModel : public QAbstractListModel {
    Q_OBJECT
public:
    enum Role { TextRole = Qt::UserRole + 1, SectionRole, SymbolRole, CountRole };

    explicit SidebarModel(AppModel& model, QObject* parent = nullptr);

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

    // The item of a row; rows outside the list (no selection) stand for "all".
    static SidebarItem itemAt(int row);
    static int rowOf(const SidebarItem& item);
    int count(int row) const;

private:
    AppModel& model_;
};

}  // namespace quellton
