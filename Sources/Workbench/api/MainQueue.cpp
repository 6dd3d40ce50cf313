#include "Workbench/api/MainQueue.hpp"

#include <algorithm>
#include <utility>

namespace workbench {

MainQueue::MainQueue(std::function<void()> wake) : wake(std::move(wake)) {}

void MainQueue::Post(Task task) {
    bool first = false;
    {
        const std::lock_guard lock(mutex);
        first = tasks.empty();
        tasks.push_back(std::move(task));
    }
    arrived.notify_one();
    if (first && wake) wake();
}

void MainQueue::RunPending() {
    std::size_t count = 0;
    {
        const std::lock_guard lock(mutex);
        count = tasks.size();
    }
    // One at a time: a task may open a modal dialog, whose own loop then goes on with the next one, in order.
    for (; count > 0; --count) {
        Task task;
        {
            const std::lock_guard lock(mutex);
            if (tasks.empty()) return;
            task = std::move(tasks.front());
            tasks.pop_front();
        }
        task();
    }
}

bool MainQueue::RunUntil(const std::function<bool()>& done, std::chrono::milliseconds timeout) {
    const auto deadline = std::chrono::steady_clock::now() + timeout;
    while (!done()) {
        {
            std::unique_lock lock(mutex);
            // A condition may also come true without a task (a page call from a worker), hence the short
            // waits.
            const auto slice =
                std::min(deadline, std::chrono::steady_clock::now() + std::chrono::milliseconds(20));
            arrived.wait_until(lock, slice, [this] { return !tasks.empty(); });
        }
        RunPending();
        if (std::chrono::steady_clock::now() >= deadline) return done();
    }
    return true;
}

}  // namespace workbench
