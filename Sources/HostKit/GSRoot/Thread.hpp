#pragma once

#include <memory>

#include "RunnableTask.hpp"
#include "UniString.hpp"

namespace hostkit {
class ThreadControl;
}

namespace GS {

class ThreadState {
  public:
    enum Value { Ready = 0, Running = 1, Finished = 2 };

    explicit ThreadState(Value value) : value(value) {}

    bool IsReady() const { return value == Ready; }
    bool IsRunning() const { return value == Running; }
    bool IsFinished() const { return value == Finished; }
    Value GetValue() const { return value; }

  private:
    Value value;
};

// A named thread of execution. Once started it outlives its object: the task is kept alive until it has
// run. An exception that leaves the task ends the thread and nothing else.
class Thread {
  public:
    Thread(const RunnableTask& task, const UniString& name);

    // Does nothing on a thread that has been started before.
    void Start();

    // Waits until the task has run and has been let go; returns at once when it was never started.
    void Join();

    ThreadState GetState() const;
    UniString GetName() const;

  private:
    std::shared_ptr<hostkit::ThreadControl> control;
};

}  // namespace GS
