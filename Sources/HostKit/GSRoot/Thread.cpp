#include "Thread.hpp"

#include <pthread.h>

#include <thread>

#include "HostKit/GSRoot/Text.hpp"
#include "HostKit/GSRoot/ThreadControl.hpp"
#include "HostKit/GSRoot/ThreadRegister.hpp"

namespace hostkit {

ThreadControl::ThreadControl(const GS::RunnableTask& task, const GS::UniString& name)
    : name(name), task(task) {}

void ThreadControl::Start() {
    {
        const std::lock_guard lock(mutex);
        if (state != GS::ThreadState::Ready) return;
        state = GS::ThreadState::Running;
    }
    ThreadRegister::Instance().Add(this, ToUtf8(name));
    try {
        std::thread([control = shared_from_this()] { control->Run(); }).detach();
    } catch (...) {
        Finish();
        throw;
    }
}

void ThreadControl::Run() {
    constexpr std::size_t longestSystemName = 15;
    pthread_setname_np(pthread_self(), ToUtf8(name).substr(0, longestSystemName).c_str());
    try {
        task.Run();
    } catch (...) {  // NOLINT(bugprone-empty-catch): ends this thread and nothing else
    }
    Finish();
}

void ThreadControl::Finish() {
    task = {};
    {
        const std::lock_guard lock(mutex);
        state = GS::ThreadState::Finished;
    }
    finished.notify_all();
    ThreadRegister::Instance().Remove(this);
}

void ThreadControl::Join() {
    std::unique_lock lock(mutex);
    finished.wait(lock, [this] { return state != GS::ThreadState::Running; });
}

GS::ThreadState ThreadControl::State() const {
    const std::lock_guard lock(mutex);
    return GS::ThreadState(state);
}

}  // namespace hostkit

namespace GS {

Thread::Thread(const RunnableTask& task, const UniString& name)
    : control(std::make_shared<hostkit::ThreadControl>(task, name)) {}

void Thread::Start() {
    control->Start();
}

void Thread::Join() {
    control->Join();
}

ThreadState Thread::GetState() const {
    return control->State();
}

UniString Thread::GetName() const {
    return control->Name();
}

}  // namespace GS
