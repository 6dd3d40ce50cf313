#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <unordered_set>
#include <vector>

#include "Workbench/mesher/Mesh.hpp"
#include "Workbench/project/Project.hpp"

namespace workbench {

/// Which elements of a project are selected, which are shown in 3D, and their shapes. Every operation is
/// linear in the elements that it is given, or in all of them.
class ElementStates {
  public:
    /// Everything shown, nothing selected, no shapes.
    void Reset(const Project& of);

    /// The project became another one: elements that are in both keep their state, by GUID, and their shapes,
    /// by record. Answers the records of the shapes that are gone.
    std::unordered_set<std::uint64_t> MoveTo(const Project& other);

    /// In the order of selection, each once.
    const std::vector<const Element*>& Selection() const { return selection; }
    void Select(std::span<const Element* const> elements);
    void Deselect(std::span<const Element* const> elements);
    void DeselectAll();

    void ShowAll();
    void ShowOnly(std::span<const Element* const> elements);
    void SetShown(std::span<const Element* const> elements, bool isShown);
    /// Neither hidden nor, once the shapes are known, without one.
    bool IsShown(const Element& element) const;
    std::size_t ShownCount() const;

    void AddShape(const ElementMeshPtr& shape);
    /// All shapes have come: an element without one is none for the 3D window.
    void ShapesAreKnown() { shapesKnown = true; }
    /// More will come.
    void ShapesAreComing() { shapesKnown = false; }
    /// Null while or when there is none.
    const ElementMeshPtr& ShapeOf(const Element& element) const { return shapes[IndexOf(element)]; }

    /// For the 3D picture: the records that are shown, and those that are selected. No value means all, with
    /// what is drawn although it is no element; to hide an element that has no shape changes nothing.
    std::optional<std::unordered_set<std::uint64_t>> ShownRecords() const;
    std::unordered_set<std::uint64_t> SelectedRecords() const;

  private:
    bool HidesAShape() const;
    std::size_t IndexOf(const Element& element) const {
        return static_cast<std::size_t>(&element - project->Elements().data());
    }

    const Project* project = nullptr;
    std::vector<const Element*> selection;
    std::vector<bool> selected;
    std::vector<bool> hidden;
    std::size_t hiddenCount = 0;
    std::vector<ElementMeshPtr> shapes;
    bool shapesKnown = false;
};

}  // namespace workbench
