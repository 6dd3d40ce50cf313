#pragma once

#include <QImage>
#include <QSize>
#include <memory>
#include <vector>

#include "Workbench/view/Camera.hpp"
#include "Workbench/view/Chunk.hpp"
#include "Workbench/view/CutFaces.hpp"
#include "Workbench/view/EglContext.hpp"
#include "Workbench/view/GlObjects.hpp"
#include "Workbench/view/Projection.hpp"
#include "Workbench/view/Scene.hpp"
#include "Workbench/view/View3D.hpp"

namespace workbench {

// Draws a scene. Lives and dies on one thread, see EglContext.
class Renderer {
  public:
    Renderer();  // throws std::runtime_error

    // Takes over what has changed in the scene.
    void Update(SceneChange change);

    QImage Draw(const Camera& camera, QSize size, Quality quality);

  private:
    void Place(const ElementMeshPtr& element);
    void TakePlanes(const std::vector<Plane>& planes);
    void UploadStates();
    Box3 Seen(const Camera& camera, QSize size) const;
    void DrawBackground() const;
    void DrawScene(const Camera& camera, QSize size, Quality quality) const;
    void DrawLayer(const gl::Program& program, Chunk::Layer layer, const Projection& projection) const;
    // Cut away by the planes, but not by `spared`.
    void DrawChunks(const gl::Program& program, Chunk::Layer layer, const Projection& projection,
                    const Chunks& drawn, const CutFaces* spared) const;

    EglContext context;
    gl::Program background;
    gl::Program surface;
    gl::Program line;
    gl::VertexArray nothing;
    gl::Buffer stateBuffer;
    gl::Texture stateTexture;
    gl::Target fast;
    gl::Target smooth;
    int largestSide = 0;
    std::vector<ElementMeshPtr> elements;
    std::vector<ElementState> states;
    Box3 bounds;  // of what is visible
    Chunks chunks;
    std::vector<std::unique_ptr<CutFaces>> cuts;
};

}  // namespace workbench
