#include "Workbench/view/Renderer.hpp"

#include <algorithm>
#include <utility>

#include "Workbench/view/Shaders.hpp"

namespace workbench {
namespace {

constexpr int samplesAtRest = 4;

}  // namespace

Renderer::Renderer()
    : background(shaders::backgroundVertex, shaders::backgroundFragment),
      surface(shaders::surfaceVertex, shaders::surfaceFragment),
      line(shaders::lineVertex, shaders::lineFragment) {
    glGetIntegerv(GL_MAX_RENDERBUFFER_SIZE, &largestSide);
    glDepthFunc(GL_LEQUAL);
    glPolygonOffset(1, 1);
    glBlendFuncSeparate(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA, GL_ONE, GL_ONE);
    glPixelStorei(GL_PACK_ALIGNMENT, 4);
    UploadStates();
}

void Renderer::Place(const ElementMeshPtr& element) {
    const auto index = static_cast<std::uint32_t>(elements.size());
    elements.push_back(element);
    for (const MeshPart& part : element->parts)
        chunks.For(*element).Add(*element, index, SurfaceOf(part), part.colour);
}

// The faces of a plane that stays are kept.
void Renderer::TakePlanes(const std::vector<Plane>& planes) {
    std::vector<std::unique_ptr<CutFaces>> wanted;
    for (const Plane& plane : planes) {
        const auto kept =
            std::ranges::find_if(cuts, [&](const auto& cut) { return cut != nullptr && cut->Of() == plane; });
        wanted.push_back(kept != cuts.end() ? std::move(*kept) : std::make_unique<CutFaces>(plane));
    }
    cuts = std::move(wanted);
}

void Renderer::Update(SceneChange change) {
    if (change.restarted) {
        chunks.Clear();
        cuts.clear();
        elements.clear();
        states.clear();
    }
    for (const ElementMeshPtr& element : change.added)
        Place(element);
    TakePlanes(change.planes);

    bool visibilityChanged = false;
    if (change.states) {
        visibilityChanged =
            !std::equal(states.begin(), states.end(), change.states->begin(),
                        [](ElementState a, ElementState b) { return a.visible == b.visible; });
        states = std::move(*change.states);
        bounds = {};
        for (std::size_t at = 0; at < elements.size(); ++at)
            if (states[at].visible) bounds.Add(elements[at]->bounds);
        UploadStates();
        chunks.Upload(states, visibilityChanged);
    }
    for (const auto& cut : cuts)
        cut->Update(elements, states, visibilityChanged);
}

void Renderer::UploadStates() {
    std::vector<std::uint8_t> selected(std::max<std::size_t>(1, states.size()));
    std::transform(states.begin(), states.end(), selected.begin(),
                   [](ElementState state) { return static_cast<std::uint8_t>(state.selected); });
    glBindBuffer(GL_TEXTURE_BUFFER, stateBuffer.Number());
    glBufferData(GL_TEXTURE_BUFFER, static_cast<GLsizeiptr>(selected.size()), selected.data(),
                 GL_DYNAMIC_DRAW);
    glBindTexture(GL_TEXTURE_BUFFER, stateTexture.Number());
    glTexBuffer(GL_TEXTURE_BUFFER, GL_R8UI, stateBuffer.Number());
}

void Renderer::DrawChunks(const gl::Program& program, Chunk::Layer layer, const Projection& projection,
                          const Chunks& drawn, const CutFaces* spared) const {
    const GLint fromCamera = program.Uniform("fromCamera");
    const GLint planes = program.Uniform("planes");
    std::array<std::array<float, 4>, mostPlanes> values{};
    for (const auto& chunk : drawn) {
        const Vec3 offset = chunk->Origin() - projection.eye;
        glUniform3f(fromCamera, static_cast<float>(offset.x), static_cast<float>(offset.y),
                    static_cast<float>(offset.z));
        for (std::size_t at = 0; at < cuts.size(); ++at) {
            const auto& [normal, distance] = cuts[at]->Of();
            const double slack = spared != nullptr ? planeSlack : -planeSlack;
            values[at] = {static_cast<float>(normal.x), static_cast<float>(normal.y),
                          static_cast<float>(normal.z),
                          static_cast<float>(distance - Dot(normal, chunk->Origin()) + slack)};
            if (cuts[at].get() == spared) values[at] = {0, 0, 0, 1};
        }
        glUniform4fv(planes, static_cast<GLsizei>(cuts.size()), values[0].data());
        chunk->Draw(layer);
    }
}

void Renderer::DrawLayer(const gl::Program& program, Chunk::Layer layer, const Projection& projection) const {
    program.Use();
    glUniformMatrix4fv(program.Uniform("projection"), 1, GL_FALSE, projection.matrix.data());
    glUniform4fv(program.Uniform("viewer"), 1, projection.viewer.data());
    glUniform1i(program.Uniform("planeCount"), static_cast<GLint>(cuts.size()));
    DrawChunks(program, layer, projection, chunks, nullptr);
    for (const auto& cut : cuts)
        DrawChunks(program, layer, projection, cut->Drawn(), cut.get());
}

// A parallel view has the same depth steps everywhere: what lies beside the picture, far away perhaps, must
// not widen them.
Box3 Renderer::Seen(const Camera& camera, QSize size) const {
    if (camera.perspective) return bounds;
    Box3 seen;
    for (const auto& chunk : chunks)
        if (MayShow(camera, size, chunk->Bounds())) seen.Add(chunk->Bounds());
    return seen;
}

void Renderer::DrawBackground() const {
    glDisable(GL_DEPTH_TEST);
    glDisable(GL_BLEND);
    glClear(GL_DEPTH_BUFFER_BIT);
    background.Use();
    glBindVertexArray(nothing.Number());
    glDrawArrays(GL_TRIANGLES, 0, 3);
}

void Renderer::DrawScene(const Camera& camera, QSize size, Quality quality) const {
    const Projection projection = ProjectionOf(camera, size, Seen(camera, size));
    for (std::size_t at = 0; at < cuts.size(); ++at)
        glEnable(GL_CLIP_DISTANCE0 + static_cast<GLenum>(at));
    glEnable(GL_DEPTH_TEST);
    glEnable(GL_POLYGON_OFFSET_FILL);
    DrawLayer(surface, Chunk::Layer::Opaque, projection);
    glDisable(GL_POLYGON_OFFSET_FILL);

    glEnable(GL_BLEND);
    glDepthMask(GL_FALSE);
    DrawLayer(surface, Chunk::Layer::Transparent, projection);
    if (quality == Quality::Still) DrawLayer(line, Chunk::Layer::Lines, projection);
    glDepthMask(GL_TRUE);
    for (std::size_t at = 0; at < cuts.size(); ++at)
        glDisable(GL_CLIP_DISTANCE0 + static_cast<GLenum>(at));
}

QImage Renderer::Draw(const Camera& camera, QSize size, Quality quality) {
    if (size.isEmpty() || size.width() > largestSide || size.height() > largestSide) return {};
    fast.Resize(size, 0);
    if (quality == Quality::Still) {
        smooth.Resize(size, samplesAtRest);
        smooth.Bind();
    } else {
        fast.Bind();
    }
    DrawBackground();
    if (IsUsable(camera)) DrawScene(camera, size, quality);
    if (quality == Quality::Still) {
        glBindFramebuffer(GL_READ_FRAMEBUFFER, smooth.Number());
        glBindFramebuffer(GL_DRAW_FRAMEBUFFER, fast.Number());
        glBlitFramebuffer(0, 0, size.width(), size.height(), 0, 0, size.width(), size.height(),
                          GL_COLOR_BUFFER_BIT, GL_NEAREST);
    }
    glBindFramebuffer(GL_READ_FRAMEBUFFER, fast.Number());
    QImage image(size, QImage::Format_RGB32);
    if (image.isNull()) return {};
    glReadPixels(0, 0, size.width(), size.height(), GL_BGRA, GL_UNSIGNED_INT_8_8_8_8_REV, image.bits());
    return image;
}

}  // namespace workbench
