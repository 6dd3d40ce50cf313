#pragma once

#include <QWidget>

#include "Workbench/api/Application.hpp"
#include "Workbench/view/PlanWidget.hpp"
#include "Workbench/view/ViewWidget.hpp"

class QComboBox;
class QStackedWidget;
class QTabBar;

namespace workbench {

/// The host's windows onto the model, the 3D window and the floor plan, with the tabs that bring one to the
/// front.
class CentralArea : public QWidget, public ApplicationObserver {
    Q_OBJECT

  public:
    explicit CentralArea(Application& application);
    ~CentralArea() override;

    /// Everything that the window in front has to show fills it.
    void Fit();
    /// What is selected fills the window in front, as far as that shows it.
    void FitSelection();
    /// Waits for the 3D picture that a person would see at rest.
    void Settle() { view->Settle(); }
    void ProjectReplaced() override;
    void ShapesArrived(const MeshBatch& batch) override;
    void ProjectReady(const MeshOutcome& outcome) override;
    void ProjectEdited() override;
    void SelectionChanged() override;
    void VisibilityChanged() override;
    void ViewChanged() override;
    void WindowChanged() override;

  private:
    void ClickElement(quint64 record, Qt::KeyboardModifiers modifiers);
    void BringToFront();
    void FillStoreys();
    void DrawPlan();
    QImage PlanPicture(bool highlightSelection);
    QString HintAfter(const MeshOutcome& outcome) const;

    Application& application;
    Say say;
    ViewWidget* view;
    PlanWidget* plan;
    QTabBar* tabs;
    QComboBox* storeys;
    QStackedWidget* stack;
    bool following = false;  // true while the controls are set to the application's state
};

}  // namespace workbench
