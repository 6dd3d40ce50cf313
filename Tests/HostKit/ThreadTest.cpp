#include "Thread.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <future>
#include <memory>
#include <stdexcept>

#include "HostKit/GSRoot/ThreadRegister.hpp"
#include "Lock.hpp"
#include "Support.hpp"

using hostkit::ThreadRegister;

namespace {

constexpr std::chrono::seconds patience(60);

GS::RunnableTask TaskOf(std::function<void()> function) {
    return new GS::FunctionRunnable(std::move(function));
}

}  // namespace

TEST(Thread, OutlivesItsObjectAndLetsItsTaskGo) {
    auto shared = std::make_shared<std::promise<void>>();
    const std::weak_ptr<std::promise<void>> watched = shared;
    std::atomic<bool> ran = false;
    {
        GS::Thread thread(TaskOf([shared, &ran] {
                              shared->get_future().wait();
                              ran = true;
                          }),
                          "exportModel");
        EXPECT_TRUE(thread.GetState().IsReady());
        thread.Start();
        thread.Start();
        EXPECT_TRUE(thread.GetState().IsRunning());
    }
    EXPECT_EQ(ThreadRegister::Instance().Running(), std::vector<std::string>{"exportModel"});
    EXPECT_FALSE(ThreadRegister::Instance().WaitForAll(std::chrono::milliseconds(1)));
    shared->set_value();
    shared.reset();
    ASSERT_TRUE(ThreadRegister::Instance().WaitForAll(patience));
    EXPECT_TRUE(ran);
    EXPECT_TRUE(watched.expired());
}

TEST(Thread, EndsAloneWhenItsTaskThrows) {
    GS::Thread thread(TaskOf([] { throw std::runtime_error("lost connection"); }), "failing");
    thread.Start();
    thread.Join();
    EXPECT_TRUE(thread.GetState().IsFinished());
    EXPECT_EQ(thread.GetState().GetValue(), 2);
    GS::Thread empty(GS::RunnableTask(), "empty");
    empty.Start();
    empty.Join();
    EXPECT_TRUE(ThreadRegister::Instance().WaitForAll(patience));
}

TEST(Thread, ManyAreRegisteredAndReported) {
    constexpr int count = 50;
    std::mutex mutex;
    std::vector<std::string> events;
    ThreadRegister::Instance().SetObserver([&](const std::string& name, ThreadRegister::Event event) {
        const std::lock_guard lock(mutex);
        events.push_back(name + (event == ThreadRegister::Event::started ? " started" : " finished"));
    });
    GS::Lock sumLock;
    int sum = 0;
    for (int i = 0; i < count; ++i) {
        GS::Thread(TaskOf([&] {
                       const GS::Guard<GS::Lock> guard(sumLock);
                       ++sum;
                   }),
                   GS::UniString::Printf("job%d", i))
            .Start();
    }
    ASSERT_TRUE(ThreadRegister::Instance().WaitForAll(patience));
    ThreadRegister::Instance().SetObserver({});
    EXPECT_EQ(sum, count);
    ASSERT_EQ(events.size(), 2U * count);
    const auto begun = std::find(events.begin(), events.end(), "job7 started");
    EXPECT_NE(std::find(begun, events.end(), "job7 finished"), events.end());
}
