#include "Workbench/api/MainQueue.hpp"

#include <gmock/gmock.h>

#include <optional>
#include <string>

namespace workbench {
namespace {

TEST(MainQueueTest, WhatIsPostedWhileTheQueueIsHeldComesAfterwardsInOrder) {
    int woken = 0;
    std::string done;
    MainQueue queue([&] { ++woken; });
    const auto post = [&](char letter) { queue.Post([&done, letter] { done += letter; }); };
    queue.Post([&] {  // long work that dispatches events
        const MainQueue::Hold work(queue);
        std::optional<MainQueue::Hold> inner(std::in_place, queue);
        post('b');
        queue.RunPending();
        inner.reset();
        queue.RunPending();
        EXPECT_FALSE(queue.RunUntil([&] { return !done.empty(); }, std::chrono::milliseconds(1)));
        EXPECT_EQ(done, "");
        woken = 0;
    });
    post('a');
    queue.RunPending();
    EXPECT_EQ(done, "a") << "what came during a task waits for the next call";
    EXPECT_EQ(woken, 1) << "by the end of the hold";
    queue.RunPending();
    EXPECT_EQ(done, "ab");
}

TEST(MainQueueTest, TheLoopOfADialogIsWokenForWhatWaitsBehindIt) {
    int woken = 0;
    std::string done;
    MainQueue queue([&] { ++woken; });
    queue.Post([&] {  // a dialog
        while (woken-- > 0)
            queue.RunPending();
        done += "closed";
    });
    queue.Post([&] { done += "behind it, "; });
    EXPECT_EQ(woken, 1);
    woken = 0;
    queue.RunPending();
    EXPECT_EQ(done, "behind it, closed");
}

}  // namespace
}  // namespace workbench
