#include "Workbench/desktop/ElementModel.hpp"

#include <algorithm>

namespace workbench {

ElementModel::ElementModel(Application& application, QObject* parent)
    : QAbstractItemModel(parent), application(application) {}

void ElementModel::Reload() {
    beginResetModel();
    const Project& project = application.OpenProject();
    const Say say{application.GetSettings().language};

    groups.clear();
    for (const Storey& storey : project.Storeys())
        groups.push_back({QString::fromStdString(storey.name), {}});
    groups.push_back({say("No storey", "Ohne Geschoss"), {}});
    for (const Element& element : project.Elements()) {
        const bool hasStorey = element.storey >= 0;
        groups[hasStorey ? static_cast<std::size_t>(element.storey) : groups.size() - 1].elements.push_back(
            &element);
    }
    std::erase_if(groups, [](const Group& group) { return group.elements.empty(); });

    places.clear();
    for (std::size_t group = 0; group < groups.size(); ++group) {
        for (std::size_t row = 0; row < groups[group].elements.size(); ++row) {
            places[groups[group].elements[row]] = {static_cast<int>(group), static_cast<int>(row)};
        }
    }
    endResetModel();
}

void ElementModel::RefreshTicks() {
    for (int row = 0; row < rowCount(); ++row) {
        const QModelIndex group = index(row, 0);
        emit dataChanged(group, group, {Qt::CheckStateRole});
        emit dataChanged(index(0, 0, group), index(rowCount(group) - 1, 0, group), {Qt::CheckStateRole});
    }
}

QModelIndex ElementModel::IndexOf(const Element& element) const {
    const auto found = places.find(&element);
    if (found == places.end()) return {};
    return index(found->second.row, 0, index(found->second.group, 0));
}

const Element* ElementModel::ElementAt(const QModelIndex& index) const {
    if (!index.isValid() || IsStorey(index)) return nullptr;
    return GroupOf(index).elements[static_cast<std::size_t>(index.row())];
}

// A storey's index carries 0, an element's its storey's row + 1.
QModelIndex ElementModel::index(int row, int column, const QModelIndex& parent) const {
    if (row < 0 || row >= rowCount(parent)) return {};
    return createIndex(row, column, parent.isValid() ? static_cast<quintptr>(parent.row() + 1) : quintptr{0});
}

QModelIndex ElementModel::parent(const QModelIndex& index) const {
    if (!index.isValid() || IsStorey(index)) return {};
    return createIndex(static_cast<int>(index.internalId()) - 1, 0, quintptr{0});
}

int ElementModel::rowCount(const QModelIndex& parent) const {
    if (!parent.isValid()) return static_cast<int>(groups.size());
    if (!IsStorey(parent) || parent.column() != 0) return 0;
    return static_cast<int>(groups[static_cast<std::size_t>(parent.row())].elements.size());
}

int ElementModel::columnCount(const QModelIndex&) const {
    return 2;
}

const ElementModel::Group& ElementModel::GroupOf(const QModelIndex& index) const {
    const auto row = IsStorey(index) ? static_cast<std::size_t>(index.row()) : index.internalId() - 1;
    return groups[row];
}

Qt::CheckState ElementModel::TickOf(const Group& group) const {
    const auto shown =
        std::count_if(group.elements.begin(), group.elements.end(),
                      [this](const Element* element) { return application.IsShown(*element); });
    if (shown == 0) return Qt::Unchecked;
    return static_cast<std::size_t>(shown) == group.elements.size() ? Qt::Checked : Qt::PartiallyChecked;
}

QVariant ElementModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid()) return {};
    const Element* element = ElementAt(index);
    if (role == Qt::CheckStateRole && index.column() == 0) {
        if (element == nullptr) return TickOf(GroupOf(index));
        return application.IsShown(*element) ? Qt::Checked : Qt::Unchecked;
    }
    if (role != Qt::DisplayRole && role != Qt::ToolTipRole) return {};
    if (element == nullptr) {
        const Group& group = GroupOf(index);
        return index.column() == 0 ? group.name : QString::number(group.elements.size());
    }
    if (index.column() == 1) return QString::fromStdString(element->ifcClass).mid(3);
    const std::string& name = element->idText.empty() ? element->name : element->idText;
    return QString::fromStdString(name.empty() ? element->ifcClass : name);
}

bool ElementModel::setData(const QModelIndex& index, const QVariant& value, int role) {
    if (role != Qt::CheckStateRole || !index.isValid()) return false;
    const Element* element = ElementAt(index);
    const std::vector<const Element*> changed =
        element != nullptr ? std::vector{element} : GroupOf(index).elements;
    application.SetShown(changed, value.toInt() == Qt::Checked);
    return true;
}

Qt::ItemFlags ElementModel::flags(const QModelIndex& index) const {
    return QAbstractItemModel::flags(index) |
           (index.column() == 0 ? Qt::ItemIsUserCheckable : Qt::NoItemFlags);
}

QVariant ElementModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole) return {};
    const Say say{application.GetSettings().language};
    return section == 0 ? say("Element", "Element") : say("Class", "Klasse");
}

}  // namespace workbench
