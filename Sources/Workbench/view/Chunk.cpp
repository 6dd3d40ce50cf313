#include "Workbench/view/Chunk.hpp"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace workbench {
namespace {

constexpr std::size_t roomyVertices = 1 << 16;
constexpr double nearby = 2000;  // metres; floats are then good to 0.1 mm
constexpr float opaqueAlpha = 0.99F;

std::array<std::uint8_t, 4> BytesOf(const std::array<float, 4>& colour) {
    std::array<std::uint8_t, 4> bytes{};
    std::transform(colour.begin(), colour.end(), bytes.begin(), [](float value) {
        return static_cast<std::uint8_t>(std::lround(255 * std::clamp(value, 0.0F, 1.0F)));
    });
    return bytes;
}

}  // namespace

Chunk::Chunk(const Vec3& origin) : origin(origin) {
    glBindVertexArray(array.Number());
    glBindBuffer(GL_ARRAY_BUFFER, vertexBuffer.Number());
    glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, indexBuffer.Number());
    const auto at = [](std::size_t offset) { return reinterpret_cast<const void*>(offset); };
    constexpr GLsizei stride = sizeof(Vertex);
    glVertexAttribPointer(0, 3, GL_FLOAT, GL_FALSE, stride, at(offsetof(Vertex, position)));
    glVertexAttribPointer(1, 4, GL_BYTE, GL_TRUE, stride, at(offsetof(Vertex, normal)));
    glVertexAttribPointer(2, 4, GL_UNSIGNED_BYTE, GL_TRUE, stride, at(offsetof(Vertex, colour)));
    glVertexAttribIPointer(3, 1, GL_UNSIGNED_INT, stride, at(offsetof(Vertex, element)));
    for (GLuint attribute = 0; attribute < 4; ++attribute)
        glEnableVertexAttribArray(attribute);
}

bool Chunk::HasRoomFor(const ElementMesh& mesh) const {
    return vertices.size() < roomyVertices && Length(mesh.bounds.Center() - origin) < nearby;
}

void Chunk::Add(const ElementMesh& mesh, std::uint32_t index, const Surface& surface,
                const std::array<float, 4>& colour) {
    const Vec3 offset = mesh.origin - origin;
    const auto first = static_cast<std::uint32_t>(vertices.size());
    const auto bytes = BytesOf(colour);
    for (const SurfaceVertex& vertex : surface.vertices) {
        const auto& p = vertex.position;
        vertices.push_back({{static_cast<float>(p[0] + offset.x), static_cast<float>(p[1] + offset.y),
                             static_cast<float>(p[2] + offset.z)},
                            vertex.normal,
                            bytes,
                            index});
    }
    const auto add = [&](Layer layer, std::vector<std::uint32_t> indices) {
        for (std::uint32_t& vertex : indices)
            vertex += first;
        if (!indices.empty()) ranges.push_back({index, layer, std::move(indices)});
    };
    add(colour[3] < opaqueAlpha ? Layer::Transparent : Layer::Opaque, surface.triangles);
    add(Layer::Lines, surface.lines);
    bounds.Add(mesh.bounds);
    changed = true;
}

void Chunk::Upload(std::span<const ElementState> states, bool visibilityChanged) {
    if (changed) UploadVertices();
    if (changed || visibilityChanged) UploadIndices(states);
    changed = false;
}

void Chunk::UploadVertices() {
    glBindBuffer(GL_ARRAY_BUFFER, vertexBuffer.Number());
    glBufferData(GL_ARRAY_BUFFER, static_cast<GLsizeiptr>(vertices.size() * sizeof(Vertex)), vertices.data(),
                 GL_STATIC_DRAW);
}

void Chunk::UploadIndices(std::span<const ElementState> states) {
    std::vector<std::uint32_t> indices;
    for (const Layer layer : {Layer::Opaque, Layer::Transparent, Layer::Lines}) {
        const std::size_t from = indices.size();
        for (const Range& range : ranges)
            if (range.layer == layer && states[range.element].visible)
                indices.insert(indices.end(), range.indices.begin(), range.indices.end());
        layers[static_cast<std::size_t>(layer)] = {static_cast<GLsizei>(indices.size() - from), from};
    }
    visible = !indices.empty();
    glBindVertexArray(array.Number());
    glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, indexBuffer.Number());
    glBufferData(GL_ELEMENT_ARRAY_BUFFER, static_cast<GLsizeiptr>(indices.size() * sizeof(indices[0])),
                 indices.data(), GL_STATIC_DRAW);
}

void Chunk::Draw(Layer layer) const {
    const Layout& layout = layers[static_cast<std::size_t>(layer)];
    if (layout.count == 0) return;
    glBindVertexArray(array.Number());
    glDrawElements(layer == Layer::Lines ? GL_LINES : GL_TRIANGLES, layout.count, GL_UNSIGNED_INT,
                   reinterpret_cast<const void*>(layout.from * sizeof(std::uint32_t)));
}

Chunk& Chunks::For(const ElementMesh& mesh) {
    const auto found = std::find_if(chunks.rbegin(), chunks.rend(),
                                    [&](const auto& chunk) { return chunk->HasRoomFor(mesh); });
    if (found != chunks.rend()) return **found;
    return *chunks.emplace_back(std::make_unique<Chunk>(mesh.bounds.Center()));
}

void Chunks::Upload(std::span<const ElementState> states, bool visibilityChanged) {
    for (const auto& chunk : chunks)
        chunk->Upload(states, visibilityChanged);
}

}  // namespace workbench
