#include "Workbench/desktop/CentralArea.hpp"

#include <QComboBox>
#include <QHBoxLayout>
#include <QStackedWidget>
#include <QTabBar>
#include <QVBoxLayout>
#include <algorithm>
#include <utility>

namespace workbench {

namespace {

enum Tab { modelTab, planTab };

}  // namespace

CentralArea::CentralArea(Application& application)
    : application(application),
      say{application.GetSettings().language},
      view(new ViewWidget(application.View())),
      plan(new PlanWidget),
      tabs(new QTabBar),
      storeys(new QComboBox),
      stack(new QStackedWidget) {
    tabs->addTab("3D");
    tabs->addTab(say("Floor Plan", "Grundriss"));
    tabs->setDrawBase(false);
    tabs->setExpanding(false);
    storeys->setAccessibleName(say("Storey", "Geschoss"));
    storeys->setSizeAdjustPolicy(QComboBox::AdjustToContents);
    stack->addWidget(view);
    stack->addWidget(plan);

    auto* strip = new QHBoxLayout;
    strip->setContentsMargins(8, 4, 8, 4);
    strip->addWidget(tabs);
    strip->addWidget(storeys);
    strip->addStretch();
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addLayout(strip);
    layout->addWidget(stack, 1);

    connect(tabs, &QTabBar::currentChanged, this, &CentralArea::BringToFront);
    connect(storeys, &QComboBox::currentIndexChanged, this, &CentralArea::BringToFront);
    connect(view, &ViewWidget::elementClicked, this, &CentralArea::ClickElement);
    connect(plan, &PlanWidget::elementClicked, this, &CentralArea::ClickElement);
    connect(view, &ViewWidget::cameraMoved, this, [this] {
        this->application.ChangeView(
            [this](ModelWindow& window) { window.SetCamera(view->CurrentCamera()); });
    });
    connect(view, &ViewWidget::resized, this, [this](QSize pixels) {
        this->application.ChangeView([pixels](ModelWindow& window) { window.SetSize(pixels); });
    });
    application.SetDrawsPlan([this](bool highlightSelection) { return PlanPicture(highlightSelection); });
    application.Watch(*this);
    WindowChanged();
}

CentralArea::~CentralArea() {
    application.Unwatch(*this);
    application.SetDrawsPlan({});
}

void CentralArea::Fit() {
    if (application.Front().kind == FrontWindow::Kind::plan) {
        plan->Fit();
    } else {
        application.ChangeView([this](ModelWindow& window) { window.Fit(application.ShownBox()); });
    }
}

void CentralArea::FitSelection() {
    if (application.Front().kind == FrontWindow::Kind::plan) {
        const QRectF area = BoundsOf(plan->Drawing(), application.States().SelectedRecords());
        if (!area.isNull()) plan->FitTo(area);
        return;
    }
    std::vector<API_Guid> guids;
    for (const Element* element : application.Selection())
        guids.push_back(element->guid);
    application.ZoomTo(guids);
}

QImage CentralArea::PlanPicture(bool highlightSelection) {
    // A widget behind another has not been given its size yet.
    plan->resize(stack->size());
    if (application.Front().kind != FrontWindow::Kind::plan) DrawPlan();
    plan->SetSelected(highlightSelection ? application.States().SelectedRecords()
                                         : std::unordered_set<std::uint64_t>());
    QImage picture = plan->grab().toImage();
    if (!highlightSelection) plan->SetSelected(application.States().SelectedRecords());
    return picture;
}

void CentralArea::FillStoreys() {
    const bool wasFollowing = std::exchange(following, true);
    storeys->clear();
    for (const Storey& storey : application.OpenProject().Storeys())
        storeys->addItem(QString::fromStdString(storey.name));
    following = wasFollowing;
}

void CentralArea::ProjectReplaced() {
    FillStoreys();
    plan->SetDrawing({});
    view->SetHint(say("Reading the shapes...", "Formen werden gelesen..."));
    SelectionChanged();
    ViewChanged();
    WindowChanged();
}

void CentralArea::ProjectEdited() {
    FillStoreys();
    if (application.IsShaping()) view->SetHint(say("Reading the shapes...", "Formen werden gelesen..."));
    SelectionChanged();
    ViewChanged();
    WindowChanged();
}

void CentralArea::ShapesArrived(const MeshBatch&) {
    ViewChanged();
}

void CentralArea::ProjectReady(const MeshOutcome& outcome) {
    view->SetHint(HintAfter(outcome));
    WindowChanged();
}

QString CentralArea::HintAfter(const MeshOutcome& outcome) const {
    if (const std::string error = application.View()->Error(); !error.empty()) {
        return say("3D pictures cannot be drawn here: ", "3D-Bilder können hier nicht gezeichnet werden: ") +
               QString::fromStdString(error);
    }
    if (outcome.status == MeshOutcome::Status::Done) return {};
    return say("The shapes of this model could not be read.",
               "Die Formen dieses Modells konnten nicht gelesen werden.");
}

void CentralArea::SelectionChanged() {
    plan->SetSelected(application.States().SelectedRecords());
    view->Refresh();
}

void CentralArea::VisibilityChanged() {
    view->Refresh();
}

void CentralArea::ViewChanged() {
    view->SetCamera(application.Window3D().CurrentCamera());
}

void CentralArea::WindowChanged() {
    const FrontWindow& front = application.Front();
    const bool isPlan = front.kind == FrontWindow::Kind::plan;
    const bool wasFollowing = std::exchange(following, true);
    tabs->setCurrentIndex(isPlan ? planTab : modelTab);
    tabs->setTabEnabled(planTab, storeys->count() > 0);
    storeys->setCurrentIndex(static_cast<int>(front.storey));
    following = wasFollowing;
    storeys->setVisible(isPlan);
    stack->setCurrentWidget(isPlan ? static_cast<QWidget*>(plan) : view);
    if (isPlan) DrawPlan();
}

void CentralArea::DrawPlan() {
    const std::size_t storey = application.Front().storey;
    if (storey >= application.OpenProject().Storeys().size()) return;
    plan->SetDrawing(
        workbench::DrawPlan(application.ShapesOn(storey), application.OpenProject().Storeys()[storey].floor));
}

void CentralArea::BringToFront() {
    if (following) return;
    const auto kind = tabs->currentIndex() == planTab ? FrontWindow::Kind::plan : FrontWindow::Kind::model;
    application.BringToFront({kind, static_cast<std::size_t>(std::max(0, storeys->currentIndex()))});
}

void CentralArea::ClickElement(quint64 record, Qt::KeyboardModifiers modifiers) {
    std::vector<API_Guid> chosen;
    if (modifiers.testFlag(Qt::ShiftModifier))
        for (const Element* element : application.Selection())
            chosen.push_back(element->guid);
    if (const Element* element = application.OpenProject().FindByRecord(record)) {
        const auto found = std::find(chosen.begin(), chosen.end(), element->guid);
        if (found == chosen.end()) {
            chosen.push_back(element->guid);
        } else {
            chosen.erase(found);
        }
    }
    application.Select(chosen);
}

}  // namespace workbench
