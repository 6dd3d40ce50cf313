#pragma once

#include <QDockWidget>
#include <QItemSelection>
#include <QSet>

#include "Workbench/api/Application.hpp"

class QSortFilterProxyModel;
class QTreeView;

namespace workbench {

class ElementModel;

/// The element list with its search field. Selecting in it selects in the model, and the other way round.
class ElementDock : public QDockWidget, public ApplicationObserver {
    Q_OBJECT

  public:
    explicit ElementDock(Application& application);
    ~ElementDock() override;

    void ProjectReplaced() override;
    void ProjectReady(const MeshOutcome& outcome) override;
    void ProjectEdited() override;
    void SelectionChanged() override;
    void VisibilityChanged() override;

  private:
    /// A row by what survives a change of the project: the storey's name and the element's row in it, -1 for
    /// the storey itself.
    struct Place {
        QString storey;
        int row = -1;
    };

    QWidget* MakeContent();
    void Search(const QString& text);
    void SelectFromList();
    QItemSelection SelectInList();
    QItemSelection RowsOfSelection() const;
    void NoteTop();
    QSet<QString> FoldedStoreys() const;
    QModelIndex Find(const Place& place) const;

    Application& application;
    Say say;
    ElementModel* elements;
    QSortFilterProxyModel* filtered;
    QTreeView* list;
    Place top;            // the first row in sight, when the list is scrolled
    bool follows = true;  // false while the list itself changes the selection
};

}  // namespace workbench
