#pragma once

#include <array>
#include <cstdint>
#include <memory>

#include "Workbench/mesher/Mesh.hpp"

namespace workbench {

inline ElementMeshPtr MakeBox(std::uint64_t record, const Vec3& from, const Vec3& to,
                              const std::array<float, 4>& colour) {
    auto mesh = std::make_shared<ElementMesh>();
    mesh->record = record;
    mesh->origin = from;
    const Vec3 size = to - from;
    MeshPart part;
    part.colour = colour;
    for (unsigned at = 0; at < 8; ++at)
        for (const double value :
             {(at & 1) != 0 ? size.x : 0.0, (at & 2) != 0 ? size.y : 0.0, (at & 4) != 0 ? size.z : 0.0})
            part.positions.push_back(static_cast<float>(value));
    part.indices = {0, 2, 1, 1, 2, 3, 4, 5, 6, 5, 7, 6, 0, 1, 4, 1, 5, 4,
                    2, 6, 3, 3, 6, 7, 0, 4, 2, 2, 4, 6, 1, 3, 5, 3, 7, 5};
    mesh->parts.push_back(std::move(part));
    mesh->bounds.Add(from);
    mesh->bounds.Add(to);
    return mesh;
}

}  // namespace workbench
