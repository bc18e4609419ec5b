#include "SidebarModel.h"

#include "AppModel.h"
#include "Catalog.h"
#include "QtText.h"

namespace quellton {

namespace {
constexpr int libraryRows = 2;  // "Alle", "Mein Mix"

}  // namespace

SidebarModel::SidebarModel(AppModel& model, QObject* parent) : QAbstractListModel(parent), model_(model) {
    connect(&model_, &AppModel::mixChanged, this, [this] {
        const QModelIndex mixRow = index(rowOf({SidebarItem::Kind::mix}));
        emit dataChanged(mixRow, mixRow, {CountRole});
    });
}

int SidebarModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : libraryRows + int(allCategories.size());
}

SidebarItem SidebarModel::itemAt(int row) {
    if (row == 1) return {SidebarItem::Kind::mix};
    if (row >= libraryRows && row < libraryRows + int(allCategories.size()))
        return SidebarItem::forCategory(allCategories[std::size_t(row - libraryRows)]);
    return {SidebarItem::Kind::all};
}

int SidebarModel::rowOf(const SidebarItem& item) {
    switch (item.kind) {
    case SidebarItem::Kind::all: return 0;
    case SidebarItem::Kind::mix: return 1;
    case SidebarItem::Kind::category: return libraryRows + int(item.category);
    }
    return 0;
}

int SidebarModel::count(int row) const { return int(detailItems(itemAt(row), model_.mix()).size()); }

QVariant SidebarModel::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid)) return {};
    const SidebarItem item = itemAt(index.row());
    switch (role) {
    case Qt::DisplayRole:
    case TextRole:
        if (item.kind == SidebarItem::Kind::all) return QStringLiteral("Alle");  // the window says "Alle Darstellungen"
        return qtText(item.title());
    case SectionRole:
        return item.kind == SidebarItem::Kind::category ? QStringLiteral("Kategorien") : QStringLiteral("Bibliothek");
    case SymbolRole:
        switch (item.kind) {
        case SidebarItem::Kind::all: return QStringLiteral("square.grid.2x2");
        case SidebarItem::Kind::mix: return QStringLiteral("shuffle");
        case SidebarItem::Kind::category: return qtText(categorySymbol(item.category));
        }
        return {};
    case CountRole: return count(index.row());
    }
    return {};
}

QHash<int, QByteArray> SidebarModel::roleNames() const {
    return {{TextRole, "label"}, {SectionRole, "section"}, {SymbolRole, "symbol"}, {CountRole, "count"}};
}

}  // namespace quellton
