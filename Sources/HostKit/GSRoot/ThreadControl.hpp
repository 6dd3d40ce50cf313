#pragma once

#include <condition_variable>
#include <memory>
#include <mutex>
#include <string>

#include "Thread.hpp"

namespace hostkit {

// What a GS::Thread and the thread of execution share; lives as long as either.
class ThreadControl : public std::enable_shared_from_this<ThreadControl> {
  public:
    ThreadControl(const GS::RunnableTask& task, const GS::UniString& name);

    void Start();
    void Join();
    GS::ThreadState State() const;
    const GS::UniString& Name() const { return name; }

  private:
    void Run();
    void Finish();

    const GS::UniString name;
    GS::RunnableTask task;
    mutable std::mutex mutex;
    std::condition_variable finished;
    GS::ThreadState::Value state = GS::ThreadState::Ready;
};

}  // namespace hostkit
