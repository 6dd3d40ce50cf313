#pragma once

#include <QImage>
#include <QPointF>
#include <QSize>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <unordered_set>
#include <vector>

#include "Workbench/mesher/Mesh.hpp"
#include "Workbench/view/Camera.hpp"
#include "Workbench/view/Section.hpp"

namespace workbench {

enum class Quality {
    Moving,  // fast: no anti-aliasing, no feature edges
    Still,
};

class Scene;

// The 3D picture of a model, drawn on a thread of its own without a window system: the same picture on
// screen, in snapshots and on machines without a display. All functions may be called from any thread.
class View3D {
  public:
    using OnFrame = std::function<void(QImage)>;

    View3D();
    ~View3D();
    View3D(const View3D&) = delete;
    View3D& operator=(const View3D&) = delete;

    // Adds elements, visible and not selected. A record that is there already is replaced.
    void Add(std::span<const ElementMeshPtr> elements);
    // Takes these elements away. Which records are shown and selected, and planes, stay.
    void Remove(const std::unordered_set<std::uint64_t>& records);
    // Takes away all elements, and what was shown and selected. Planes stay.
    void Clear();

    // Shows exactly these records; no value shows all, later ones too.
    void ShowOnly(std::optional<std::unordered_set<std::uint64_t>> records);
    // Cuts away what lies on the side that the planes' normals point to, and fills the cut bodies' faces. Six
    // planes at most have an effect.
    void Cut(const std::vector<Plane>& planes);
    // Draws exactly these records in the selection colour; records without a shape are kept in mind.
    void Select(std::unordered_set<std::uint64_t> records);

    std::size_t Count() const;
    std::size_t VisibleCount() const;
    // Everything that was added, visible or not.
    std::vector<ElementMeshPtr> Elements() const;
    // The box around the visible elements, metres; empty without any.
    Box3 Bounds() const;
    std::optional<Box3> BoundsOf(std::uint64_t record) const;

    // The function that gets the pictures that Redraw asks for, on the drawing thread. It is not called any
    // more once another was set or the view is gone.
    void SetOnFrame(OnFrame function);
    // Asks for a picture of `size` pixels. Requests that were not begun when a newer one comes are dropped.
    void Redraw(const Camera& camera, QSize size, Quality quality);

    // Draws and waits: the snapshot. A null image when drawing is impossible, see Error; the mere background
    // for a camera that is not usable.
    QImage Render(const Camera& camera, QSize size, Quality quality = Quality::Still);

    // The visible element at a point of the picture (pixels, origin top left); one that is cut is hit on the
    // face of the cut, too.
    std::optional<std::uint64_t> Pick(const Camera& camera, QSize size, QPointF point) const;
    // The point of the model there, metres.
    std::optional<Vec3> PointAt(const Camera& camera, QSize size, QPointF point) const;

    // Why there are no pictures; empty while there are. Waits until the drawing thread has started, which
    // this, Redraw and Render do.
    std::string Error() const;

  private:
    struct Request {
        Camera camera;
        QSize size;
        Quality quality = Quality::Still;
    };
    class Worker;
    std::unique_ptr<Scene> scene;
    std::unique_ptr<Worker> worker;
};

}  // namespace workbench
