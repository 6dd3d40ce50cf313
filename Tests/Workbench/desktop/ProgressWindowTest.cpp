#include "Workbench/desktop/ProgressWindow.hpp"

#include <gmock/gmock.h>

#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <thread>

#include "Workbench/desktop/OffscreenApplication.hpp"
#include "Workbench/desktop/PageBridge.hpp"

namespace workbench {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

class ProgressWindowTest : public testing::Test {
  protected:
    // False when `done` does not come.
    static bool Until(const std::function<bool()>& done, const std::function<void()>& step) {
        for (int tries = 0; tries < 5000 && !done(); ++tries) {
            step();
            std::this_thread::sleep_for(1ms);
        }
        return done();
    }
    bool WorkUntil(const std::function<bool()>& done, double fraction) {
        return Until(done, [&] { goOn = window.Working("Merging", fraction); });
    }
    template <typename Part>
    Part& PartOf() {
        return *window.findChild<Part*>();
    }

    OffscreenApplication qt;
    MainQueue queue;
    ProgressWindow window{nullptr, queue, Language::german, 0ms};
    bool goOn = true;
};

TEST_F(ProgressWindowTest, ShowsTheWorkUntilItEndsOrIsStopped) {
    ASSERT_TRUE(WorkUntil([&] { return window.isVisible(); }, 0.25));
    EXPECT_EQ(QApplication::activeModalWidget(), &window) << "no other window gets clicks and keys";
    EXPECT_EQ(PartOf<QLabel>().text(), "Merging");
    EXPECT_EQ(PartOf<QProgressBar>().value(), 250);
    ASSERT_TRUE(WorkUntil([&] { return PartOf<QProgressBar>().maximum() == 0; }, -1))
        << "nobody knows how far";
    EXPECT_TRUE(goOn);
    PartOf<QPushButton>().click();
    EXPECT_FALSE(window.Working("Merging", 0.5));
    EXPECT_FALSE(PartOf<QPushButton>().isEnabled());
    window.Working("Merging", 1);
    EXPECT_FALSE(window.isVisible());

    ASSERT_TRUE(WorkUntil([&] { return window.isVisible(); }, 0));
    EXPECT_TRUE(goOn) << "other work";
    EXPECT_TRUE(Until([&] { return !window.isVisible(); }, [] { QApplication::processEvents(); }))
        << "work that does not tell its end is over when the event loop goes on";
}

TEST_F(ProgressWindowTest, NothingElseHappensInTheMiddleOfTheWork) {
    std::vector<std::string> done;
    PageBridge bridge(queue);
    GS::Ref<DG::JSObject> object = new DG::JSObject("HOST");
    object->AddItem(new DG::JSFunction("Touch", [&](GS::Ref<DG::JSBase> value) {
        done.emplace_back("page call");
        return value;
    }));
    bridge.SetObject(object);
    QObject::connect(&bridge, &PageBridge::answered, [&](const QString& key, bool failed) {
        done.push_back(key.toStdString() + (failed ? "!" : ""));
    });

    bool called = false;
    QTimer::singleShot(0, [&] {
        bridge.call("first", "Touch", {});
        queue.Post([&] { done.emplace_back("notification"); });
        bridge.call("second", "None", {});
        called = true;
    });
    ASSERT_TRUE(WorkUntil([&] { return called; }, 0.5)) << "events are dispatched";
    QTimer::singleShot(0, [&] { queue.RunPending(); });
    ASSERT_TRUE(WorkUntil([&] { return window.isVisible(); }, 0.5));
    EXPECT_THAT(done, IsEmpty());
    window.Working("Merging", 1);
    EXPECT_FALSE(bridge.call("third", "None", {}).isValid()) << "no call overtakes another";
    queue.RunPending();
    EXPECT_THAT(done, ElementsAre("page call", "first", "notification", "second!", "third!"));
    EXPECT_EQ(bridge.call("fourth", "Touch", "now"), QVariant(QVariantList{false, "now"}));
}

}  // namespace
}  // namespace workbench
