#pragma once

#include <QElapsedTimer>
#include <QItemSelection>
#include <QMainWindow>
#include <QSettings>

#include "Workbench/api/Application.hpp"
#include "Workbench/desktop/CentralArea.hpp"

class QLabel;
class QLineEdit;
class QProgressBar;
class QSortFilterProxyModel;
class QTreeView;

namespace workbench {

class ElementModel;

/// The Workbench's window: the windows onto the model, the element list, the menu bar; the add-on's palette
/// docks to it.
class MainWindow : public QMainWindow, public ApplicationObserver {
    Q_OBJECT

  public:
    explicit MainWindow(Application& application);
    ~MainWindow() override;

    CentralArea& Area() { return *area; }

    /// Adds the menus of the loaded add-on.
    void AddAddOnMenus();

    void ProjectReplaced() override;
    void ShapesArrived(const MeshBatch& batch) override;
    void ProjectReady(const MeshOutcome& outcome) override;
    void SelectionChanged() override;
    void VisibilityChanged() override;
    void MenuFlagsChanged() override;
    bool Working(const std::string& what, double fraction) override;

  private:
    void MakeMenus();
    void MakeElementDock();
    void MakeStatusBar();
    void FillRecent();
    void OpenByDialog();
    void SaveByDialog();
    void SelectFromList();
    QItemSelection RowsOfSelection() const;
    void ShowProgress(const QString& text, double fraction);
    void ShowSummary();

    Application& application;
    Say say;
    QSettings settings;
    CentralArea* area;
    ElementModel* elements;
    QSortFilterProxyModel* filtered;
    QTreeView* elementList;
    QMenu* recentMenu = nullptr;
    QLabel* summary = nullptr;
    QProgressBar* progress = nullptr;
    QElapsedTimer working;
    bool listFollows = true;  // false while the list itself changes the selection
};

}  // namespace workbench
