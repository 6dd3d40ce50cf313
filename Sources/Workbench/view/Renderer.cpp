#include "Workbench/view/Renderer.hpp"

#include <algorithm>
#include <cmath>
#include <utility>

#include "Workbench/view/Shaders.hpp"

namespace workbench {
namespace {

constexpr int samplesAtRest = 4;
constexpr double nearestPlane = 0.02;       // metres
constexpr double depthRatio = 1.0 / 20000;  // of the nearest to the farthest plane, for 24 bits

struct DepthRange {
    double from = 0;
    double to = 0;
};

DepthRange DepthOf(const Box3& box, const Camera& camera, const CameraAxes& axes) {
    if (box.Empty()) return {0.1, 100};
    const Vec3 center = box.Center() - camera.position;
    const Vec3 half = box.Size() * 0.5;
    const double middle = Dot(center, axes.forward);
    const double reach = std::abs(axes.forward.x) * half.x + std::abs(axes.forward.y) * half.y +
                         std::abs(axes.forward.z) * half.z;
    const double to = std::max(1.0, (middle + reach) * 1.01);
    const double from = std::max({nearestPlane, to * depthRatio, (middle - reach) * 0.99});
    return {from, to};
}

// From world axes around the camera's position to clip space, column by column.
std::array<float, 16> ProjectionOf(const Camera& camera, QSize size, const Box3& box) {
    const CameraAxes axes = AxesOf(camera);
    const Slopes slopes = SlopesOf(camera, size);
    const DepthRange depth = DepthOf(box, camera, axes);
    const Vec3 x = axes.right * (1 / slopes.x);
    const Vec3 y = axes.up * (-1 / slopes.y);
    const Vec3 z = axes.forward * ((depth.to + depth.from) / (depth.to - depth.from));
    const double shift = -2 * depth.to * depth.from / (depth.to - depth.from);
    const std::array<double, 16> matrix{
        x.x, y.x, z.x,   axes.forward.x,  //
        x.y, y.y, z.y,   axes.forward.y,  //
        x.z, y.z, z.z,   axes.forward.z,  //
        0,   0,   shift, 0,
    };
    std::array<float, 16> floats{};
    std::transform(matrix.begin(), matrix.end(), floats.begin(),
                   [](double v) { return static_cast<float>(v); });
    return floats;
}

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
    const auto index = static_cast<std::uint32_t>(boxes.size());
    boxes.push_back(element->bounds);
    auto chunk = std::find_if(chunks.rbegin(), chunks.rend(),
                              [&](const auto& candidate) { return candidate->HasRoomFor(*element); });
    if (chunk == chunks.rend()) {
        chunks.push_back(std::make_unique<Chunk>(element->bounds.Center()));
        chunk = chunks.rbegin();
    }
    (*chunk)->Add(*element, index);
}

void Renderer::Update(SceneChange change) {
    if (change.restarted) {
        chunks.clear();
        boxes.clear();
        states.clear();
    }
    for (const ElementMeshPtr& element : change.added)
        Place(element);
    if (!change.states) return;

    const bool visibilityChanged =
        !std::equal(states.begin(), states.end(), change.states->begin(),
                    [](ElementState a, ElementState b) { return a.visible == b.visible; });
    states = std::move(*change.states);
    bounds = {};
    for (std::size_t at = 0; at < boxes.size(); ++at)
        if (states[at].visible) bounds.Add(boxes[at]);
    UploadStates();
    for (const auto& chunk : chunks)
        chunk->Upload(states, visibilityChanged);
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

void Renderer::DrawLayer(const gl::Program& program, Chunk::Layer layer, const Camera& camera,
                         const std::array<float, 16>& projection) const {
    program.Use();
    glUniformMatrix4fv(program.Uniform("projection"), 1, GL_FALSE, projection.data());
    const GLint fromCamera = program.Uniform("fromCamera");
    for (const auto& chunk : chunks) {
        const Vec3 offset = chunk->Origin() - camera.position;
        glUniform3f(fromCamera, static_cast<float>(offset.x), static_cast<float>(offset.y),
                    static_cast<float>(offset.z));
        chunk->Draw(layer);
    }
}

void Renderer::DrawScene(const Camera& camera, QSize size, Quality quality) const {
    glDisable(GL_DEPTH_TEST);
    glDisable(GL_BLEND);
    glClear(GL_DEPTH_BUFFER_BIT);
    background.Use();
    glBindVertexArray(nothing.Number());
    glDrawArrays(GL_TRIANGLES, 0, 3);

    const auto projection = ProjectionOf(camera, size, bounds);
    glEnable(GL_DEPTH_TEST);
    glEnable(GL_POLYGON_OFFSET_FILL);
    DrawLayer(surface, Chunk::Layer::Opaque, camera, projection);
    glDisable(GL_POLYGON_OFFSET_FILL);

    glEnable(GL_BLEND);
    glDepthMask(GL_FALSE);
    DrawLayer(surface, Chunk::Layer::Transparent, camera, projection);
    if (quality == Quality::Still) DrawLayer(line, Chunk::Layer::Lines, camera, projection);
    glDepthMask(GL_TRUE);
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
    DrawScene(camera, size, quality);
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
