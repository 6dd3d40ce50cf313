#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <vector>

#include "Workbench/view/GlObjects.hpp"
#include "Workbench/view/Scene.hpp"
#include "Workbench/view/Surface.hpp"

namespace workbench {

// Elements near one another in one set of buffers. Vertices are floats from an origin close by, so a model
// far from the coordinate origin is as steady as one at it.
class Chunk {
  public:
    explicit Chunk(const Vec3& origin);

    const Vec3& Origin() const { return origin; }
    // Around all that was added, metres, world; empty while nothing of it is visible.
    Box3 Bounds() const { return visible ? bounds : Box3{}; }
    bool HasRoomFor(const ElementMesh& mesh) const;
    // A surface of the element, told from the element's origin. `index` is the element's place in the scene's
    // list.
    void Add(const ElementMesh& mesh, std::uint32_t index, const Surface& surface,
             const std::array<float, 4>& colour);

    // Brings the buffers up to date: vertices after Add, indices also when visibility has changed.
    void Upload(std::span<const ElementState> states, bool visibilityChanged);

    enum class Layer { Opaque, Transparent, Lines };
    void Draw(Layer layer) const;

  private:
    struct Vertex {
        std::array<float, 3> position;
        std::array<std::int8_t, 4> normal;
        std::array<std::uint8_t, 4> colour;
        std::uint32_t element;
    };
    struct Range {
        std::uint32_t element = 0;
        Layer layer = Layer::Opaque;
        std::vector<std::uint32_t> indices;
    };
    struct Layout {
        GLsizei count = 0;
        std::size_t from = 0;  // in indices
    };

    void UploadVertices();
    void UploadIndices(std::span<const ElementState> states);

    Vec3 origin;
    Box3 bounds;
    bool visible = false;
    std::vector<Vertex> vertices;
    std::vector<Range> ranges;
    std::array<Layout, 3> layers;
    bool changed = true;
    gl::VertexArray array;
    gl::Buffer vertexBuffer;
    gl::Buffer indexBuffer;
};

// As many chunks as are needed.
class Chunks {
  public:
    // The one for another surface of an element.
    Chunk& For(const ElementMesh& mesh);
    void Upload(std::span<const ElementState> states, bool visibilityChanged);
    void Clear() { chunks.clear(); }

    auto begin() const { return chunks.begin(); }
    auto end() const { return chunks.end(); }

  private:
    std::vector<std::unique_ptr<Chunk>> chunks;
};

}  // namespace workbench
