#pragma once

#include <QObject>

#include "Workbench/api/Application.hpp"

class QAction;
class QMenu;

namespace workbench {

/// The Edit menu: undo and redo by the commands' names, one at a time or all.
class EditMenu : public QObject, public ApplicationObserver {
    Q_OBJECT

  public:
    EditMenu(QMenu* menu, Application& application);
    ~EditMenu() override;

    void ProjectReplaced() override { HistoryChanged(); }
    void HistoryChanged() override;

  private:
    Application& application;
    Say say;
    QAction* undo;
    QAction* redo;
    QAction* undoAll;
    QAction* redoAll;
};

}  // namespace workbench
