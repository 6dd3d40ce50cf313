#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "Workbench/mesher/Mesh.hpp"

namespace workbench {

struct SurfaceVertex {
    std::array<float, 3> position{};      // as in the part
    std::array<std::int8_t, 4> normal{};  // 127 is length 1; the last is 0
};

// What drawing needs of a part: vertices with normals that are smooth over gentle bends and split at
// creases, and the lines to draw at creases and rims.
struct Surface {
    std::vector<SurfaceVertex> vertices;
    std::vector<std::uint32_t> triangles;  // three for each
    std::vector<std::uint32_t> lines;      // two for each
};
Surface SurfaceOf(const MeshPart& part);

}  // namespace workbench
