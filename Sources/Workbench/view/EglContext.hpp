#pragma once

namespace workbench {

// An OpenGL 3.3 core context without any window system, current on the thread that makes it. That thread
// must have no other context; Qt's main thread under X has one.
class EglContext {
  public:
    EglContext();  // throws std::runtime_error
    ~EglContext();
    EglContext(const EglContext&) = delete;
    EglContext& operator=(const EglContext&) = delete;

  private:
    void* display = nullptr;
    void* surface = nullptr;
    void* context = nullptr;
};

}  // namespace workbench
