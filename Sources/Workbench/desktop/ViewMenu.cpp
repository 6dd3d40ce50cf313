#include "Workbench/desktop/ViewMenu.hpp"

#include <QAction>
#include <QActionGroup>
#include <QMenu>

#include "Workbench/desktop/CentralArea.hpp"
#include "Workbench/desktop/CutPanel.hpp"

namespace workbench {

ViewMenu::ViewMenu(QMenu* menu, Application& application, CentralArea& area)
    : QObject(menu), application(application) {
    const Say say{application.GetSettings().language};
    const auto toggle = [menu](QActionGroup* group, const QString& text, const QKeySequence& key) {
        QAction* action = menu->addAction(text);
        action->setShortcut(key);
        action->setCheckable(true);
        if (group != nullptr) group->addAction(action);
        return action;
    };
    auto* windows = new QActionGroup(this);
    plan = toggle(windows, say("Floor &Plan", "&Grundriss"), QKeySequence("F2"));
    model = toggle(windows, say("&3D Window", "&3D-Fenster"), QKeySequence("F3"));
    menu->addSeparator();
    auto* projections = new QActionGroup(this);
    perspective = toggle(projections, say("P&erspective", "&Perspektive"), QKeySequence("Alt+Shift+3"));
    axonometry = toggle(projections, say("A&xonometry", "A&xonometrie"), QKeySequence("Alt+Shift+2"));
    cutting = toggle(nullptr, say("&Cutting Planes", "S&chnittebenen"), QKeySequence("Alt+Shift+C"));
    menu->addSeparator();
    menu->addAction(say("&Fit in Window", "Alles &einpassen"), QKeySequence("Ctrl+0"), &area,
                    &CentralArea::Fit);
    ofSelection.push_back(menu->addAction(say("&Zoom to Selection", "Auf Auswahl &zoomen"),
                                          QKeySequence("Ctrl+Shift+0"), &area, &CentralArea::FitSelection));
    menu->addAction(say("&Reset View", "Ansicht zu&rücksetzen"), this, [this] {
        this->application.ChangeView(
            [this](ModelWindow& window) { window.Reset(this->application.ShownBox()); });
    });
    menu->addSeparator();
    ofSelection.push_back(menu->addAction(say("Show &Selection in 3D", "Au&swahl in 3D zeigen"),
                                          QKeySequence("F5"), this, [this] {
                                              this->application.ShowSelection();
                                              this->application.BringToFront({});
                                          }));
    ofSelection.push_back(menu->addAction(say("&Hide Selection", "Auswahl aus&blenden"), this, [this] {
        this->application.SetShown(this->application.Selection(), false);
    }));
    menu->addAction(say("Show &All", "A&lles zeigen"), QKeySequence("Ctrl+F5"), this,
                    [this] { this->application.ShowAll(); });

    connect(model, &QAction::triggered, this, [this] { this->application.BringToFront({}); });
    connect(plan, &QAction::triggered, this, [this] {
        this->application.BringToFront({FrontWindow::Kind::plan, this->application.Front().storey});
        WindowChanged();  // it stays where it was when the model has no storeys
    });
    const auto project = [this](bool toPerspective) {
        this->application.ChangeView(
            [&](ModelWindow& window) { window.SwitchTo(toPerspective, this->application.ShownBox()); });
    };
    connect(perspective, &QAction::triggered, this, [project] { project(true); });
    connect(axonometry, &QAction::triggered, this, [project] { project(false); });
    connect(cutting, &QAction::triggered, this, &ViewMenu::SwitchCutting);
    application.Watch(*this);
    ProjectReplaced();
}

ViewMenu::~ViewMenu() {
    application.Unwatch(*this);
}

void ViewMenu::SwitchCutting(bool on) {
    application.ChangeView([&](ModelWindow& window) {
        if (on && window.Planes().empty()) window.SetPlanes(CutPanel::FirstPlanes(application.ShownBox()));
        window.SetCutting(on);
    });
}

void ViewMenu::ProjectReplaced() {
    ViewChanged();
    WindowChanged();
    SelectionChanged();
}

void ViewMenu::ViewChanged() {
    const ModelWindow& window = application.Window3D();
    (window.IsPerspective() ? perspective : axonometry)->setChecked(true);
    cutting->setChecked(window.IsCutting());
}

void ViewMenu::WindowChanged() {
    plan->setEnabled(!application.OpenProject().Storeys().empty());
    (application.Front().kind == FrontWindow::Kind::plan ? plan : model)->setChecked(true);
}

void ViewMenu::SelectionChanged() {
    for (QAction* action : ofSelection)
        action->setEnabled(!application.Selection().empty());
}

}  // namespace workbench
