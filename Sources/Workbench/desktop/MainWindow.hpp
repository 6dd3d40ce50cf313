#pragma once

#include <QMainWindow>
#include <QSettings>
#include <filesystem>
#include <optional>

#include "Workbench/api/Application.hpp"
#include "Workbench/desktop/CentralArea.hpp"
#include "Workbench/desktop/ProgressWindow.hpp"

class QLabel;
class QProgressBar;

namespace workbench {

/// The Workbench's window: the windows onto the model, the element list, the menu bar; the add-on's palette
/// docks to it.
class MainWindow : public QMainWindow, public ApplicationObserver {
    Q_OBJECT

  public:
    /// Events are dispatched during long work; the queue is held meanwhile.
    MainWindow(Application& application, MainQueue& queue);
    ~MainWindow() override;

    CentralArea& Area() { return *area; }

    /// Adds the menus of the loaded add-on.
    void AddAddOnMenus();

    /// Where to save the model, with this name beside the last one if the person agrees; nothing when they
    /// think better of it.
    std::optional<std::filesystem::path> AskForFile(const std::filesystem::path& suggestion);

    void ProjectReplaced() override;
    void ShapesArrived(const MeshBatch& batch) override;
    void ProjectReady(const MeshOutcome& outcome) override;
    void ProjectEdited() override;
    void HistoryChanged() override;
    void SelectionChanged() override { ShowSummary(); }
    void VisibilityChanged() override { ShowSummary(); }
    void MenuFlagsChanged() override;
    void PropertiesMapped(const MappingCounts& counts) override;
    bool Working(const std::string& what, double fraction) override;

  protected:
    void closeEvent(QCloseEvent* event) override;

  private:
    void AddNavigator(QDockWidget& elements);
    void MakeMenus();
    void MakeStatusBar();
    void NoteRecent();
    void FillRecent();
    void OpenByDialog();
    void SaveByDialog();
    void ShowShaping(double fraction);
    void ShowSummary();

    Application& application;
    Say say;
    QSettings settings;
    CentralArea* area;
    ProgressWindow* progress;
    QMenu* recentMenu = nullptr;
    QLabel* summary = nullptr;
    QWidget* shaping = nullptr;
    QProgressBar* shapes = nullptr;
};

}  // namespace workbench
