#pragma once

#include "Ref.hpp"
#include "Runnable.hpp"

namespace GS {

// Shared ownership of a runnable.
class RunnableTask {
  public:
    RunnableTask() = default;
    RunnableTask(Runnable* runnable) : runnable(runnable) {}
    RunnableTask(const Ref<Runnable>& runnable) : runnable(runnable) {}

    void Run() const { runnable->Run(); }

  private:
    Ref<Runnable> runnable;
};

}  // namespace GS
