#pragma once

#include <chrono>
#include <functional>
#include <string>
#include <vector>

namespace hostkit {

// The running GS::Threads of this process.
class ThreadRegister {
  public:
    enum class Event { started, finished };
    using Observer = std::function<void(const std::string& name, Event event)>;

    static ThreadRegister& Instance();

    // Names in the order of starting; equal names appear as often as they run.
    std::vector<std::string> Running() const;

    // "started" comes from the thread that called Start, "finished" from the thread that ends. The observer
    // must not start threads; once replaced (an empty one: none) it is not called any more.
    void SetObserver(Observer observer);

    // True once no thread runs and the tasks of all are destroyed; false when the time is up first.
    bool WaitForAll(std::chrono::milliseconds timeout) const;

  private:
    friend class ThreadControl;
    struct State;

    ThreadRegister();

    // "key" tells threads of equal names apart.
    void Add(const void* key, const std::string& name);
    void Remove(const void* key);

    State& state;
};

}  // namespace hostkit
