#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "Workbench/view/Chunk.hpp"
#include "Workbench/view/Section.hpp"

namespace workbench {

// The faces that one plane leaves on the elements, made when an element is first seen and then kept.
class CutFaces {
  public:
    explicit CutFaces(const Plane& plane) : plane(plane), frame(FrameOf(plane)) {}

    const Plane& Of() const { return plane; }
    const Chunks& Drawn() const { return chunks; }

    // `elements` may have grown since the last time, but not changed.
    void Update(std::span<const ElementMeshPtr> elements, std::span<const ElementState> states,
                bool visibilityChanged);

  private:
    Plane plane;
    PlaneFrame frame;
    Chunks chunks;
    std::vector<bool> made;  // by element
};

}  // namespace workbench
