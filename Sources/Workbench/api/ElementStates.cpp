#include "Workbench/api/ElementStates.hpp"

#include <algorithm>
#include <utility>

namespace workbench {

void ElementStates::Reset(const Project& of) {
    project = &of;
    const std::size_t count = of.Elements().size();
    selection.clear();
    selected.assign(count, false);
    hidden.assign(count, false);
    hiddenCount = 0;
    shapes.assign(count, nullptr);
    shapesKnown = false;
}

std::unordered_set<std::uint64_t> ElementStates::MoveTo(const Project& other) {
    const ElementStates before = std::exchange(*this, ElementStates());
    Reset(other);
    std::unordered_set<std::uint64_t> gone;
    for (const ElementMeshPtr& shape : before.shapes) {
        if (shape == nullptr) continue;
        if (other.FindByRecord(shape->record) == nullptr) {
            gone.insert(shape->record);
        } else {
            AddShape(shape);
        }
    }
    const auto moved = [&](const Element& element) { return other.FindByGuid(element.guid); };
    for (const Element* element : before.selection)
        if (const Element* now = moved(*element)) Select(std::span(&now, 1));
    for (const Element& element : before.project->Elements()) {
        if (before.hiddenCount == 0) break;
        const Element* now = before.hidden[before.IndexOf(element)] ? moved(element) : nullptr;
        if (now) SetShown(std::span(&now, 1), false);
    }
    shapesKnown = before.shapesKnown;
    return gone;
}

void ElementStates::Select(std::span<const Element* const> elements) {
    for (const Element* element : elements) {
        if (selected[IndexOf(*element)]) continue;
        selected[IndexOf(*element)] = true;
        selection.push_back(element);
    }
}

void ElementStates::Deselect(std::span<const Element* const> elements) {
    for (const Element* element : elements)
        selected[IndexOf(*element)] = false;
    std::erase_if(selection, [this](const Element* element) { return !selected[IndexOf(*element)]; });
}

void ElementStates::DeselectAll() {
    selected.assign(selected.size(), false);
    selection.clear();
}

void ElementStates::ShowAll() {
    hidden.assign(hidden.size(), false);
    hiddenCount = 0;
}

void ElementStates::ShowOnly(std::span<const Element* const> elements) {
    hidden.assign(hidden.size(), true);
    hiddenCount = hidden.size();
    SetShown(elements, true);
}

void ElementStates::SetShown(std::span<const Element* const> elements, bool isShown) {
    for (const Element* element : elements) {
        const std::size_t index = IndexOf(*element);
        if (hidden[index] != isShown) continue;
        hidden[index] = !isShown;
        hiddenCount = isShown ? hiddenCount - 1 : hiddenCount + 1;
    }
}

bool ElementStates::IsShown(const Element& element) const {
    const std::size_t index = IndexOf(element);
    return !hidden[index] && (!shapesKnown || shapes[index] != nullptr);
}

std::size_t ElementStates::ShownCount() const {
    const auto& elements = project->Elements();
    return static_cast<std::size_t>(std::count_if(
        elements.begin(), elements.end(), [this](const Element& element) { return IsShown(element); }));
}

void ElementStates::AddShape(const ElementMeshPtr& shape) {
    if (const Element* element = project->FindByRecord(shape->record)) shapes[IndexOf(*element)] = shape;
}

bool ElementStates::HidesAShape() const {
    if (!shapesKnown || hiddenCount == 0) return hiddenCount > 0;
    for (std::size_t index = 0; index < hidden.size(); ++index)
        if (hidden[index] && shapes[index] != nullptr) return true;
    return false;
}

std::optional<std::unordered_set<std::uint64_t>> ElementStates::ShownRecords() const {
    if (!HidesAShape()) return std::nullopt;
    std::unordered_set<std::uint64_t> records;
    records.reserve(hidden.size() - hiddenCount);
    for (const Element& element : project->Elements())
        if (IsShown(element)) records.insert(element.record);
    return records;
}

std::unordered_set<std::uint64_t> ElementStates::SelectedRecords() const {
    std::unordered_set<std::uint64_t> records;
    records.reserve(selection.size());
    for (const Element* element : selection)
        if (!shapesKnown || ShapeOf(*element) != nullptr) records.insert(element->record);
    return records;
}

}  // namespace workbench
