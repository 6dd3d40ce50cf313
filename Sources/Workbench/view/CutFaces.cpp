#include "Workbench/view/CutFaces.hpp"

#include "Workbench/view/CutFace.hpp"

namespace workbench {

void CutFaces::Update(std::span<const ElementMeshPtr> elements, std::span<const ElementState> states,
                      bool visibilityChanged) {
    made.resize(elements.size());
    for (std::size_t at = 0; at < elements.size(); ++at) {
        if (made[at] || !states[at].visible) continue;
        made[at] = true;
        const ElementMesh& mesh = *elements[at];
        for (const SectionPart& part : SectionOf(mesh, plane, frame))
            chunks.For(mesh).Add(mesh, static_cast<std::uint32_t>(at),
                                 CutFaceOf(part, plane, frame, mesh.origin), part.colour);
    }
    chunks.Upload(states, visibilityChanged);
}

}  // namespace workbench
