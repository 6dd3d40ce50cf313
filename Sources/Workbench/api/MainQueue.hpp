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

    /// `wake` is called, from any thread, when there is something to run and no call of it is still to be
    /// answered by `RunPending`.
    explicit MainQueue(std::function<void()> wake = {});

    void Post(Task task);

    /// Runs what is queued now, on the calling thread; what those tasks post waits for the next call. Does
    /// nothing while the queue is held.
    void RunPending();

    /// Runs tasks as they come until `done()` holds; false when `timeout` went by first.
    bool RunUntil(const std::function<bool()>& done, std::chrono::milliseconds timeout);

    /// As long as one of them lives nothing is run: events may be dispatched in the middle of long work. What
    /// is posted meanwhile comes afterwards.
    class Hold {
      public:
        explicit Hold(MainQueue& queue);
        ~Hold();
        Hold(const Hold&) = delete;
        Hold& operator=(const Hold&) = delete;

      private:
        MainQueue& queue;
    };
    bool IsHeld() const;

  private:
    Task Take();
    void WakeUp();

    std::function<void()> wake;
    mutable std::mutex mutex;
    std::condition_variable arrived;
    std::deque<Task> tasks;
    int holds = 0;
    bool woken = false;  // and RunPending has not been called since
};

}  // namespace workbench
