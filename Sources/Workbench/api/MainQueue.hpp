#pragma once

#include <chrono>
#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>

namespace workbench {

/// Work for the host's main thread, posted from any thread and run in the order of posting.
///
/// The desktop runs it from Qt's event loop (`wake` posts an event that calls `RunPending`); programs without
/// an event loop of their own call `RunUntil`.
class MainQueue {
  public:
    using Task = std::function<void()>;

    /// `wake` is called, on the posting thread, whenever the queue stops being empty.
    explicit MainQueue(std::function<void()> wake = {});

    void Post(Task task);

    /// Runs what is queued now, on the calling thread; what those tasks post waits for the next call.
    void RunPending();

    /// Runs tasks as they come until `done()` holds; false when `timeout` went by first.
    bool RunUntil(const std::function<bool()>& done, std::chrono::milliseconds timeout);

  private:
    std::function<void()> wake;
    std::mutex mutex;
    std::condition_variable arrived;
    std::deque<Task> tasks;
};

}  // namespace workbench
