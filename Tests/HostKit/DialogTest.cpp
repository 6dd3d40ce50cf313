#include <gtest/gtest.h>

#include <atomic>
#include <stdexcept>
#include <thread>
#include <tuple>

#include "DGModule.hpp"
#include "HostKit/GSRoot/ThreadRegister.hpp"
#include "Support.hpp"
#include "Thread.hpp"

namespace {

// As an add-on writes its palette.
class TestPalette : public DG::Palette, public DG::PanelObserver {
  public:
    explicit TestPalette(GSResID dialog = 32500) : DG::Palette(1, dialog, 1), browser(GetReference(), 1) {
        Attach(*this);
        BeginEventProcessing();
        browser.LoadURL("http://127.0.0.1/page");
        browser.DisableContextMenu();
        const GS::Ref<DG::JSObject> object = new DG::JSObject("TESTAPI");
        object->AddItem(GS::Ref<DG::JSFunction>(
            new DG::JSFunction("Echo", [](const GS::Ref<DG::JSBase>& value) { return value; })));
        object->AddItem(GS::Ref<DG::JSFunction>(new DG::JSFunction(
            "Fail",
            [](const GS::Ref<DG::JSBase>&) -> GS::Ref<DG::JSBase> { throw GS::ClassCastException(); })));
        browser.RegisterAsynchJSObject(object);
    }

    ~TestPalette() override {
        EndEventProcessing();
        Detach(*this);
    }

    void PanelResized(const DG::PanelResizeEvent& event) override {
        BeginMoveResizeItems();
        browser.Resize(event.GetHorizontalChange(), event.GetVerticalChange());
        EndMoveResizeItems();
    }

    void PanelCloseRequested(const DG::PanelCloseRequestEvent&, bool* accepted) override {
        *accepted = closes;
    }

    DG::Browser browser;
    bool closes = true;
};

// As an add-on writes a modal dialog: item 1 accepts, item 2 is a list, item 3 a button that does nothing.
class TestDialog : public DG::ModalDialog,
                   public DG::PanelObserver,
                   public DG::ButtonItemObserver,
                   public DG::CompoundItemObserver {
  public:
    explicit TestDialog(GSResID dialog = 32510)
        : DG::ModalDialog(1, dialog, 1),
          accept(GetReference(), 1),
          list(GetReference(), 2),
          other(GetReference(), 3) {
        Attach(*this);
        AttachToAllItems(*this);
        accept.Attach(*this);
        list.SetTabFieldCount(2);
        list.SetHeaderItemCount(1);
        list.SetHeaderItemSize(1, list.GetItemWidth());
        list.SetHeaderItemText(1, "Name");
        list.SetHeaderItemText(2, "not there");
        for (const char* row : {"first", "second"}) {
            list.AppendItem();
            list.SetTabItemText(list.GetItemCount(), 2, row);
            list.SetTabItemText(9, 1, row);
        }
    }
    ~TestDialog() override {
        DetachFromAllItems(*this);
        Detach(*this);
    }

    void PanelOpened(const DG::PanelOpenEvent&) override { events += "opened "; }
    void PanelClosed(const DG::PanelCloseEvent&) override { events += "closed "; }
    void PanelCloseRequested(const DG::PanelCloseRequestEvent& event, bool* accepted) override {
        events += event.IsAccepted() ? "accepting " : "cancelling ";
        *accepted = closes;
    }
    void ButtonClicked(const DG::ButtonClickEvent& event) override {
        events += event.GetSource() == &other ? "other " : "button ";
        if (event.GetSource() == &accept) PostCloseRequest(Accept);
    }

    DG::Button accept;
    DG::SingleSelListBox list;
    DG::Button other;
    bool closes = true;
    std::string events;
};

class DialogTest : public testing::Test {
  protected:
    hostkit::Host host;
    hostkit::dg::RecordingDriver driver;
    std::unique_ptr<hostkit::Session> session =
        std::make_unique<hostkit::Session>(host, driver, AddOnResources());
};

constexpr std::chrono::seconds patience(60);

}  // namespace

TEST_F(DialogTest, PaletteIsShownResizedAndClosed) {
    TestPalette palette;
    EXPECT_FALSE(palette.IsVisible());
    palette.Show();
    EXPECT_TRUE(driver.IsPaletteVisible());
    palette.DisableItems();
    EXPECT_FALSE(driver.AreItemsEnabled());
    palette.EnableItems();
    EXPECT_TRUE(driver.AreItemsEnabled());

    driver.ResizePalette(20, -30);
    EXPECT_EQ(driver.BrowserWidth(), 320);
    EXPECT_EQ(driver.BrowserHeight(), 370);

    palette.closes = false;
    EXPECT_FALSE(driver.ClosePalette());
    EXPECT_TRUE(palette.IsVisible());
    palette.closes = true;
    EXPECT_TRUE(driver.ClosePalette());
    EXPECT_FALSE(palette.IsVisible());

    palette.EndEventProcessing();
    driver.ResizePalette(20, 20);
    EXPECT_EQ(driver.BrowserWidth(), 320);
    EXPECT_EQ(driver.Calls(), (std::vector<std::string>{"CreateBrowser", "LoadURL", "DisableContextMenu",
                                                        "RegisterAsynchJSObject", "Show", "DisableItems",
                                                        "EnableItems", "Resize", "Hide"}));
    EXPECT_EQ(driver.Url(), "http://127.0.0.1/page");
    EXPECT_FALSE(driver.HasContextMenu());
}

TEST_F(DialogTest, ThePageCallsItsFunctions) {
    EXPECT_THROW(driver.Call("Echo"), std::out_of_range);
    {
        const TestPalette palette;
        const GS::Ref<DG::JSBase> value = new DG::JSValue("text");
        EXPECT_EQ(driver.Call("Echo", value), value);
        EXPECT_TRUE(driver.Call("Echo") == nullptr);
        EXPECT_THROW(driver.Call("Fail"), GS::ClassCastException);
        EXPECT_THROW(driver.Call("None"), std::out_of_range);
    }
    EXPECT_FALSE(driver.HasPalette());
    EXPECT_THROW(driver.Call("Echo"), std::out_of_range);
}

TEST_F(DialogTest, TheNewestPaletteIsTheOneThatCounts) {
    auto first = std::make_unique<TestPalette>();
    const TestPalette second;
    first.reset();
    EXPECT_TRUE(driver.HasPalette());
    EXPECT_TRUE(driver.Call("Echo") == nullptr);
}

TEST_F(DialogTest, ScriptsComeFromAnyThread) {
    TestPalette palette;
    GS::Thread thread(new GS::FunctionRunnable([&] { palette.browser.ExecuteJS("Done()"); }), "job");
    thread.Start();
    EXPECT_TRUE(driver.WaitForScript("Done()", patience));
    EXPECT_FALSE(driver.WaitForScript("Done()", std::chrono::milliseconds(1)));
    EXPECT_NE(driver.Scripts().at(0).thread, std::this_thread::get_id());
    palette.browser.ExecuteJS("Done()");
    EXPECT_TRUE(driver.WaitForScript("Done()", patience));
    EXPECT_TRUE(hostkit::ThreadRegister::Instance().WaitForAll(patience));
}

TEST_F(DialogTest, PalettesOutliveTheirSession) {
    TestPalette palette;
    palette.Show();
    std::atomic<bool> stop = false;
    std::atomic<int> refused = 0;
    for (int i = 0; i < 3; ++i) {
        GS::Thread(new GS::FunctionRunnable([&] {
                       while (!stop)
                           palette.browser.ExecuteJS("Tick()");
                       if (!palette.browser.ExecuteJS("Tick()")) ++refused;
                   }),
                   "ticker")
            .Start();
    }
    EXPECT_TRUE(driver.WaitForScript("Tick()", patience));
    session.reset();
    stop = true;
    ASSERT_TRUE(hostkit::ThreadRegister::Instance().WaitForAll(patience));
    EXPECT_EQ(refused, 3);
    EXPECT_FALSE(driver.HasPalette());
    palette.Show();
    EXPECT_FALSE(palette.IsVisible());
    EXPECT_EQ(DG::InformationAlert("a", "b", "OK"), 0);

    session = std::make_unique<hostkit::Session>(host, driver, AddOnResources());
    const TestPalette next;
    EXPECT_TRUE(driver.HasPalette());
}

TEST_F(DialogTest, WithoutAResourceNothingIsShown) {
    TestPalette palette(1);
    palette.Show();
    EXPECT_FALSE(palette.IsVisible());
    EXPECT_FALSE(palette.browser.ExecuteJS("x()"));
    EXPECT_TRUE(driver.Calls().empty());
}

TEST_F(DialogTest, ModalDialogsAreLeftByButtonsKeysAndObjections) {
    const std::tuple<std::optional<short>, bool, bool, const char*> cases[] = {
        {1, true, true, "opened button accepting closed "},
        {std::nullopt, true, false, "opened cancelling closed "},
        {3, true, false, "opened other cancelling closed "},
        {2, true, false, "opened cancelling closed "},  // a list is no button
        {9, true, false, "opened cancelling closed "},
        {1, false, false, "opened button accepting cancelling closed "}};
    for (const auto& [answer, closes, accepted, events] : cases) {
        TestDialog dialog;
        dialog.closes = closes;
        dialog.PostCloseRequest(DG::ModalDialog::Accept);  // not open: nothing to close
        driver.QueueDialogAnswer(answer);
        EXPECT_EQ(dialog.Invoke(), accepted);
        EXPECT_EQ(dialog.events, events);
    }
    TestDialog dialog;
    dialog.accept.SetText("Yes");
    EXPECT_EQ(dialog.accept.GetText(), "Yes");
    EXPECT_EQ(dialog.other.GetText(), "More");
    EXPECT_TRUE(dialog.Invoke());
    const auto shown = driver.Dialogs().back();
    EXPECT_EQ(shown.title, "Choice");
    EXPECT_EQ(shown.texts.at(1), "Yes");
    EXPECT_EQ(shown.lists.at(2).header, std::vector<std::string>{"Name"});
    EXPECT_EQ(shown.lists.at(2).rows, (std::vector<std::vector<std::string>>{{"", "first"}, {"", "second"}}));
    EXPECT_EQ(dialog.list.GetItemWidth(), 180);

    TestDialog unknown(1);
    EXPECT_FALSE(unknown.Invoke());
    session.reset();
    EXPECT_FALSE(dialog.Invoke());
    EXPECT_EQ(dialog.accept.GetText(), "");
    EXPECT_EQ(driver.Dialogs().size(), 7U);
}

TEST_F(DialogTest, AlertsAreAnswered) {
    driver.QueueAlertAnswer(2);
    EXPECT_EQ(DG::InformationAlert("Large", "Small", "OK", "Cancel"), 2);
    EXPECT_EQ(DG::InformationAlert("Again", "", "OK"), 1);
    ASSERT_EQ(driver.Alerts().size(), 2U);
    EXPECT_EQ(driver.Alerts()[0].small, "Small");
    EXPECT_EQ(driver.Alerts()[0].buttons[1], "Cancel");
}
