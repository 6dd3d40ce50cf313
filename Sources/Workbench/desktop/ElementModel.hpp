#pragma once

#include <QAbstractItemModel>
#include <unordered_map>
#include <vector>

#include "Workbench/api/Application.hpp"

namespace workbench {

/// The open project's elements by storey, with a tick for what the 3D window shows.
class ElementModel : public QAbstractItemModel {
    Q_OBJECT

  public:
    explicit ElementModel(Application& application, QObject* parent = nullptr);

    /// Reads the project anew.
    void Reload();
    /// The ticks may have changed.
    void RefreshTicks();

    QModelIndex IndexOf(const Element& element) const;
    /// Null for a storey.
    const Element* ElementAt(const QModelIndex& index) const;

    QModelIndex index(int row, int column, const QModelIndex& parent = {}) const override;
    QModelIndex parent(const QModelIndex& index) const override;
    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    bool setData(const QModelIndex& index, const QVariant& value, int role) override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

  private:
    struct Group {
        QString name;
        std::vector<const Element*> elements;
    };

    struct Place {
        int group;
        int row;
    };

    bool IsStorey(const QModelIndex& index) const { return index.internalId() == 0; }
    const Group& GroupOf(const QModelIndex& index) const;
    Qt::CheckState TickOf(const Group& group) const;

    Application& application;
    std::vector<Group> groups;
    std::unordered_map<const Element*, Place> places;
};

}  // namespace workbench
