#include "HostKit/GSRoot/ThreadRegister.hpp"

#include <algorithm>
#include <condition_variable>
#include <mutex>

namespace hostkit {

struct ThreadRegister::State {
    struct Entry {
        const void* key;
        std::string name;
    };

    // The observer has a lock of its own: it may read the register.
    std::mutex observerMutex;
    Observer observer;

    mutable std::mutex mutex;
    std::condition_variable changed;
    std::vector<Entry> running;

    void Tell(const std::string& name, Event event) {
        const std::lock_guard lock(observerMutex);
        if (observer) observer(name, event);
    }
};

// Never destroyed: threads may run on while the process leaves main.
ThreadRegister::ThreadRegister() : state(*new State) {}

ThreadRegister& ThreadRegister::Instance() {
    static auto& instance = *new ThreadRegister;
    return instance;
}

std::vector<std::string> ThreadRegister::Running() const {
    const std::lock_guard lock(state.mutex);
    std::vector<std::string> names;
    names.reserve(state.running.size());
    for (const State::Entry& entry : state.running)
        names.push_back(entry.name);
    return names;
}

void ThreadRegister::SetObserver(Observer observer) {
    const std::lock_guard lock(state.observerMutex);
    state.observer = std::move(observer);
}

bool ThreadRegister::WaitForAll(std::chrono::milliseconds timeout) const {
    std::unique_lock lock(state.mutex);
    return state.changed.wait_for(lock, timeout, [this] { return state.running.empty(); });
}

void ThreadRegister::Add(const void* key, const std::string& name) {
    {
        const std::lock_guard lock(state.mutex);
        state.running.push_back({key, name});
    }
    state.Tell(name, Event::started);
}

void ThreadRegister::Remove(const void* key) {
    const auto hasKey = [key](const State::Entry& entry) { return entry.key == key; };
    std::string name;
    {
        const std::lock_guard lock(state.mutex);
        name = std::find_if(state.running.begin(), state.running.end(), hasKey)->name;
    }
    state.Tell(name, Event::finished);
    {
        const std::lock_guard lock(state.mutex);
        std::erase_if(state.running, hasKey);
    }
    state.changed.notify_all();
}

}  // namespace hostkit
