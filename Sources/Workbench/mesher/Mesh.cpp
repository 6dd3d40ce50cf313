#include "Workbench/mesher/Mesh.hpp"

#include <algorithm>

namespace workbench {

void Box3::Add(const Vec3& point) {
    min = {std::min(min.x, point.x), std::min(min.y, point.y), std::min(min.z, point.z)};
    max = {std::max(max.x, point.x), std::max(max.y, point.y), std::max(max.z, point.z)};
}

void Box3::Add(const Box3& box) {
    if (box.Empty()) return;
    Add(box.min);
    Add(box.max);
}

}  // namespace workbench
