// The part of the application that is about what its windows show.

#include "HostKit/API/Registry.hpp"
#include "Workbench/api/Application.hpp"
#include "Workbench/api/PlanPicture.hpp"

namespace workbench {

using Records = std::unordered_set<std::uint64_t>;

std::vector<const Element*> Application::Find(std::span<const API_Guid> guids) const {
    std::vector<const Element*> elements;
    elements.reserve(guids.size());
    for (const API_Guid& guid : guids)
        if (const Element* element = project->FindByGuid(guid)) elements.push_back(element);
    return elements;
}

void Application::Changed(unsigned changes, Who who) {
    const bool pending = changed != 0;
    changed |= changes;
    viewOutdated |= changes;
    if (who == Who::person) {
        TellChanges();
    } else if (!pending) {
        queue.Post([this, of = std::weak_ptr(generation)] {
            if (!of.expired()) TellChanges();
        });
    }
}

void Application::TellChanges() {
    const unsigned told = std::exchange(changed, 0U);
    UpdateView();
    const auto tell = [&](unsigned change, void (ApplicationObserver::*of)()) {
        if ((told & change) != 0) Tell([of](ApplicationObserver& observer) { (observer.*of)(); });
    };
    tell(viewChange, &ApplicationObserver::ViewChanged);
    tell(windowChange, &ApplicationObserver::WindowChanged);
    tell(visibilityChange, &ApplicationObserver::VisibilityChanged);
    tell(selectionChange, &ApplicationObserver::SelectionChanged);
    if ((told & selectionChange) == 0) return;

    API_Neig last{};
    if (!Selection().empty()) last = API_Neig(Selection().back()->guid);
    session.GetRegistry().NotifySelectionChange(&last);
}

void Application::UpdateView() {
    const unsigned outdated = std::exchange(viewOutdated, 0U);
    if ((outdated & visibilityChange) != 0) view->ShowOnly(states.ShownRecords());
    if ((outdated & selectionChange) != 0) view->Select(states.SelectedRecords());
    if ((outdated & viewChange) != 0)
        view->Cut(window3D.IsCutting() ? window3D.Planes() : std::vector<Plane>());
}

void Application::Select(std::span<const API_Guid> elements, Who who) {
    states.DeselectAll();
    AddToSelection(elements, who);
}

void Application::AddToSelection(std::span<const API_Guid> elements, Who who) {
    states.Select(Find(elements));
    Changed(selectionChange, who);
}

void Application::TakeFromSelection(std::span<const API_Guid> elements, Who who) {
    states.Deselect(Find(elements));
    Changed(selectionChange, who);
}

void Application::ShowAll(Who who) {
    states.ShowAll();
    Changed(visibilityChange, who);
}

void Application::ShowOnly(std::span<const API_Guid> elements, Who who) {
    states.ShowOnly(Find(elements));
    Changed(visibilityChange, who);
}

void Application::ShowSelection(Who who) {
    states.ShowOnly(Selection());
    Changed(visibilityChange, who);
}

void Application::SetShown(std::span<const Element* const> elements, bool shown) {
    states.SetShown(elements, shown);
    Changed(visibilityChange, Who::person);
}

void Application::ChangeView(const std::function<void(ModelWindow&)>& change, Who who) {
    change(window3D);
    Changed(viewChange, who);
}

bool Application::ZoomTo(std::span<const API_Guid> elements, Who who) {
    Box3 box;
    for (const Element* element : Find(elements))
        if (const auto& shape = states.ShapeOf(*element)) box.Add(shape->bounds);
    if (box.Empty()) return false;
    ChangeView([&](ModelWindow& window) { window.Fit(box); }, who);
    return true;
}

Box3 Application::ShownBox() {
    UpdateView();
    return view->Bounds();
}

QImage Application::Picture3D(bool highlightSelection) {
    UpdateView();
    if (highlightSelection) return view->Render(window3D.CurrentCamera(), window3D.Size());
    view->Select({});
    QImage picture = view->Render(window3D.CurrentCamera(), window3D.Size());
    view->Select(states.SelectedRecords());
    return picture;
}

QImage Application::PicturePlan(bool highlightSelection) {
    if (drawsPlan) return drawsPlan(highlightSelection);
    PlanDrawing drawing;
    if (front.storey < project->Storeys().size())
        drawing = DrawPlan(ShapesOn(front.storey), project->Storeys()[front.storey].floor);
    return PictureOf(drawing, window3D.Size(), highlightSelection ? states.SelectedRecords() : Records());
}

bool Application::BringToFront(const FrontWindow& window, Who who) {
    if (window.kind == FrontWindow::Kind::plan && window.storey >= project->Storeys().size()) return false;
    FrontWindow brought = window;
    if (window.kind == FrontWindow::Kind::model) brought.storey = front.storey;  // for the way back
    if (brought == front) return true;
    front = brought;
    Changed(windowChange, who);
    return true;
}

std::vector<ElementMeshPtr> Application::ShapesOn(std::size_t storey) const {
    std::vector<ElementMeshPtr> shapes;
    for (const Element& element : project->Elements())
        if (element.storey == static_cast<int>(storey))
            if (const auto& shape = states.ShapeOf(element)) shapes.push_back(shape);
    return shapes;
}

std::optional<Box3> Application::BoundsOf(const Element& element) const {
    const auto& shape = states.ShapeOf(element);
    if (shape == nullptr) return std::nullopt;
    return shape->bounds;
}

}  // namespace workbench
