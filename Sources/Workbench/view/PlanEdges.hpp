#pragma once

#include <QLineF>
#include <array>
#include <span>
#include <vector>

#include "Workbench/mesher/Mesh.hpp"

namespace workbench {

// What a plan shows of each of the meshes below a horizontal cut, seen from above: where surfaces end or
// bend. Lines behind something higher are left out. `caps` are the triangles that the cut leaves,
// anticlockwise. All in metres, in the space of the meshes.
std::vector<std::vector<QLineF>> EdgesBelow(std::span<const ElementMeshPtr> meshes, double cut,
                                            std::span<const std::array<Vec3, 3>> caps);

}  // namespace workbench
