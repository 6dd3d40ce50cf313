#pragma once

#include <QObject>

#include "Workbench/api/Application.hpp"

class QAction;
class QMenu;

namespace workbench {

class CentralArea;

/// The View menu: which window is in front, how the 3D window projects and cuts, and what it shows.
class ViewMenu : public QObject, public ApplicationObserver {
    Q_OBJECT

  public:
    ViewMenu(QMenu* menu, Application& application, CentralArea& area);
    ~ViewMenu() override;

    void ViewChanged() override;
    void WindowChanged() override;
    void SelectionChanged() override;
    void ProjectReplaced() override;
    void ProjectEdited() override { ProjectReplaced(); }

  private:
    void SwitchCutting(bool on);

    Application& application;
    QAction* model;
    QAction* plan;
    QAction* perspective;
    QAction* axonometry;
    QAction* cutting;
    std::vector<QAction*> ofSelection;
};

}  // namespace workbench
