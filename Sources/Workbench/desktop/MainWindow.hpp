#pragma once

#include <QElapsedTimer>
#include <QMainWindow>
#include <QSettings>
#include <memory>

#include "Workbench/api/Application.hpp"
#include "Workbench/view/ViewWidget.hpp"

class QLabel;
class QLineEdit;
class QProgressBar;
class QSortFilterProxyModel;
class QTreeView;

namespace workbench {

class ElementModel;

/// The Workbench's window: the 3D view, the element list, the menu bar; the add-on's palette docks to it.
class MainWindow : public QMainWindow, public ApplicationObserver {
    Q_OBJECT

  public:
    explicit MainWindow(Application& application);
    ~MainWindow() override;

    View3D& View() { return *view; }
    const Camera& CurrentCamera() const { return viewWidget->CurrentCamera(); }
    QSize ViewSize() const { return viewWidget->size(); }

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
    void ClickElement(quint64 record, Qt::KeyboardModifiers modifiers);
    void SelectFromList();
    QString HintAfter(const MeshOutcome& outcome) const;
    void ShowProgress(const QString& text, double fraction);
    void ShowSummary();

    Application& application;
    Say say;
    QSettings settings;
    std::shared_ptr<View3D> view;
    ViewWidget* viewWidget;
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
