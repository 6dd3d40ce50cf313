#include "Workbench/view/View3D.hpp"

#include <condition_variable>
#include <deque>
#include <exception>
#include <future>
#include <mutex>
#include <string>
#include <thread>
#include <utility>

#include "Workbench/view/Renderer.hpp"
#include "Workbench/view/Scene.hpp"

namespace workbench {

class View3D::Worker {
  public:
    explicit Worker(const Scene& scene) : scene(scene) {}

    ~Worker() {
        {
            const std::lock_guard lock(mutex);
            stopping = true;
        }
        changed.notify_one();
        if (thread.joinable()) thread.join();
    }

    void SetOnFrame(OnFrame function) {
        const std::lock_guard lock(onFrameMutex);
        onFrame = std::move(function);
    }

    void Redraw(const Request& request) {
        Start();
        {
            const std::lock_guard lock(mutex);
            next = request;
        }
        changed.notify_one();
    }

    QImage Render(const Request& request) {
        Start();
        std::future<QImage> image;
        {
            const std::lock_guard lock(mutex);
            image = asked.emplace_back(request, std::promise<QImage>()).second.get_future();
        }
        changed.notify_one();
        return image.get();
    }

    std::string Error() {
        Start();
        return started.get();
    }

  private:
    using Asked = std::pair<Request, std::promise<QImage>>;

    // A view that is never drawn needs neither thread nor OpenGL.
    void Start() {
        std::call_once(startOnce, [this] { thread = std::thread([this] { Run(); }); });
    }

    void Run() {
        std::unique_ptr<Renderer> renderer;
        std::string error;
        try {
            renderer = std::make_unique<Renderer>();
        } catch (const std::exception& reason) {
            error = reason.what();
        }
        starting.set_value(error);
        while (WaitForWork()) {
            if (auto request = TakeAsked())
                request->second.set_value(Draw(renderer.get(), request->first));
            else if (const auto latest = TakeNext())
                Show(Draw(renderer.get(), *latest));
        }
    }

    bool WaitForWork() {
        std::unique_lock lock(mutex);
        changed.wait(lock, [this] { return stopping || next || !asked.empty(); });
        return !stopping || !asked.empty();
    }

    std::optional<Asked> TakeAsked() {
        const std::lock_guard lock(mutex);
        if (asked.empty()) return std::nullopt;
        Asked request = std::move(asked.front());
        asked.pop_front();
        return request;
    }

    std::optional<Request> TakeNext() {
        const std::lock_guard lock(mutex);
        return std::exchange(next, std::nullopt);
    }

    QImage Draw(Renderer* renderer, const Request& request) {
        if (renderer == nullptr) return {};
        try {
            renderer->Update(scene.Changes(mark));
            return renderer->Draw(request.camera, request.size, request.quality);
        } catch (const std::exception&) {  // no memory for a picture of that size
            return {};
        }
    }

    void Show(QImage image) {
        if (image.isNull()) return;
        const std::lock_guard lock(onFrameMutex);
        if (onFrame) onFrame(std::move(image));
    }

    const Scene& scene;
    SceneMark mark;  // the thread's own

    std::promise<std::string> starting;
    std::shared_future<std::string> started = starting.get_future().share();

    std::mutex mutex;
    std::condition_variable changed;
    std::optional<Request> next;
    std::deque<Asked> asked;
    bool stopping = false;

    std::mutex onFrameMutex;
    OnFrame onFrame;

    std::once_flag startOnce;
    std::thread thread;
};

View3D::View3D() : scene(std::make_unique<Scene>()), worker(std::make_unique<Worker>(*scene)) {}

View3D::~View3D() = default;

void View3D::Add(std::span<const ElementMeshPtr> elements) {
    scene->Add(elements);
}

void View3D::Remove(const std::unordered_set<std::uint64_t>& records) {
    scene->Remove(records);
}

void View3D::Clear() {
    scene->Clear();
}

void View3D::ShowOnly(std::optional<std::unordered_set<std::uint64_t>> records) {
    scene->ShowOnly(std::move(records));
}

void View3D::Cut(const std::vector<Plane>& planes) {
    scene->Cut(planes);
}

void View3D::Select(std::unordered_set<std::uint64_t> records) {
    scene->Select(std::move(records));
}

std::size_t View3D::Count() const {
    return scene->Count();
}

std::vector<ElementMeshPtr> View3D::Elements() const {
    SceneMark fromTheStart;
    return scene->Changes(fromTheStart).added;
}

std::size_t View3D::VisibleCount() const {
    return scene->VisibleCount();
}

Box3 View3D::Bounds() const {
    return scene->Bounds();
}

std::optional<Box3> View3D::BoundsOf(std::uint64_t record) const {
    return scene->BoundsOf(record);
}

void View3D::SetOnFrame(OnFrame function) {
    worker->SetOnFrame(std::move(function));
}

void View3D::Redraw(const Camera& camera, QSize size, Quality quality) {
    worker->Redraw({camera, size, quality});
}

QImage View3D::Render(const Camera& camera, QSize size, Quality quality) {
    return worker->Render({camera, size, quality});
}

std::optional<std::uint64_t> View3D::Pick(const Camera& camera, QSize size, QPointF point) const {
    if (!IsUsable(camera)) return std::nullopt;
    const auto hit = scene->Cast(RayThrough(camera, size, point));
    if (!hit) return std::nullopt;
    return hit->record;
}

std::optional<Vec3> View3D::PointAt(const Camera& camera, QSize size, QPointF point) const {
    if (!IsUsable(camera)) return std::nullopt;
    const auto hit = scene->Cast(RayThrough(camera, size, point));
    if (!hit) return std::nullopt;
    return hit->point;
}

std::string View3D::Error() const {
    return worker->Error();
}

}  // namespace workbench
