#include "Workbench/api/MainQueue.hpp"

#include <algorithm>
#include <utility>

namespace workbench {

MainQueue::MainQueue(std::function<void()> wake) : wake(std::move(wake)) {}

void MainQueue::Post(Task task) {
    {
        const std::lock_guard lock(mutex);
        tasks.push_back(std::move(task));
    }
    arrived.notify_one();
    WakeUp();
}

void MainQueue::WakeUp() {
    {
        const std::lock_guard lock(mutex);
        if (tasks.empty() || holds > 0 || std::exchange(woken, true)) return;
    }
    if (wake) wake();
}

void MainQueue::RunPending() {
    std::size_t count = 0;
    {
        const std::lock_guard lock(mutex);
        woken = false;
        count = tasks.size();
    }
    // One at a time: a task may open a modal dialog, whose own loop then goes on with the next one, in order.
    for (; count > 0; --count) {
        const Task task = Take();
        if (!task) return;
        WakeUp();
        task();
    }
}

// Nothing when there is none, or none may run.
MainQueue::Task MainQueue::Take() {
    const std::lock_guard lock(mutex);
    if (tasks.empty() || holds > 0) return {};
    Task task = std::move(tasks.front());
    tasks.pop_front();
    return task;
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
            arrived.wait_until(lock, slice, [this] { return !tasks.empty() && holds == 0; });
        }
        RunPending();
        if (std::chrono::steady_clock::now() >= deadline) return done();
    }
    return true;
}

bool MainQueue::IsHeld() const {
    const std::lock_guard lock(mutex);
    return holds > 0;
}

MainQueue::Hold::Hold(MainQueue& queue) : queue(queue) {
    const std::lock_guard lock(queue.mutex);
    ++queue.holds;
}

MainQueue::Hold::~Hold() {
    {
        const std::lock_guard lock(queue.mutex);
        --queue.holds;
    }
    queue.WakeUp();
}

}  // namespace workbench
