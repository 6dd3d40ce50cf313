#pragma once

#include <QSize>
#include <array>

#include "Workbench/mesher/Mesh.hpp"
#include "Workbench/view/Camera.hpp"

namespace workbench {

// A camera as drawing needs it. Positions are told from `eye`, so that they stay small far from the
// coordinate origin.
struct Projection {
    Vec3 eye;
    std::array<float, 16> matrix{};  // from world axes around the eye to clip space, column by column
    std::array<float, 4> viewer{};   // seen from the eye: the viewer's place (1), or the way to it (0)
};

// `seen` bounds the depth. The camera must be usable.
Projection ProjectionOf(const Camera& camera, QSize size, const Box3& seen);

// Whether a parallel camera's picture may show a part of the box. The camera must be usable.
bool MayShow(const Camera& camera, QSize size, const Box3& box);

}  // namespace workbench
