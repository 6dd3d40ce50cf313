// The add-on's modal dialogs and the publisher's pane, on a screen that nobody sees.

#include <gmock/gmock.h>

#include <QKeyEvent>
#include <QLineEdit>
#include <QPushButton>
#include <QTimer>
#include <QTreeWidget>

#include "HostKit/GSRoot/Text.hpp"
#include "Workbench/HeadlessApplication.hpp"
#include "Workbench/desktop/NavigatorDock.hpp"
#include "Workbench/desktop/OffscreenApplication.hpp"
#include "Workbench/desktop/QtDriver.hpp"

namespace workbench {
namespace {

using hostkit::ToUniString;
using testing::ElementsAre;

const char* const dialogs = R"(
'GDLG' 32510 Modal 0 0 260 90 "Neue Eigenschaft" {
 Button 170 57 80 23 LargePlain "OK"
 Button 80 57 80 23 LargePlain "Abbrechen"
 TextEdit 10 10 240 23 LargePlain 255
}
'GDLG' 32520 Modal 0 0 400 300 "Publishing" {
 Button 310 267 80 23 LargePlain "OK"
 LeftText 10 10 380 20 SmallPlain vCenter "Heading"
 SingleSelList 10 35 380 222 SmallPlain NoPartialItems 16 HasHeader 18
})";

// Ends its dialog as an add-on does: item 1 accepts what it does not refuse, item 2 cancels.
struct AddOnSide : hostkit::dg::DialogEvents {
    void UserClicked(short item) override {
        said += std::to_string(item);
        if (item == 2 || !refuses) dialog->End(item == 1);
    }
    void UserRequestedClose(bool accepting) override {
        said += accepting ? "enter" : "close";
        dialog->End(accepting);
    }
    std::unique_ptr<hostkit::dg::DialogPeer> dialog;
    std::string said;
    bool refuses = false;
};

class DialogTest : public testing::Test {
  protected:
    DialogTest() { resources.AddText(dialogs, "dialogs"); }
    AddOnSide& Make(GSResID id) {
        side = {};
        side.dialog = driver.CreateDialog(*resources.Dialog(id), side);
        return side;
    }
    // Does it to the window as soon as that is shown.
    static void Then(const std::function<void(QWidget&)>& act) {
        QTimer::singleShot(0, [act] { act(*QApplication::activeModalWidget()); });
    }
    static void Press(QWidget& widget, Qt::Key key) {
        QKeyEvent event(QEvent::KeyPress, key, Qt::NoModifier);
        QApplication::sendEvent(&widget, &event);
    }

    OffscreenApplication qt;
    MainQueue queue;
    QtDriver driver{queue};
    hostkit::Resources resources;
    AddOnSide side;
};

TEST_F(DialogTest, EnterAndEscapeClickTheFirstTwoButtons) {
    Make(32510);
    Then([](QWidget& window) {
        auto* field = window.findChild<QLineEdit*>();
        EXPECT_EQ(window.focusWidget(), field);
        field->setText("Höhe");
        Press(*field, Qt::Key_Return);
    });
    EXPECT_TRUE(side.dialog->Run());
    EXPECT_EQ(hostkit::ToUtf8(side.dialog->Text(3)), "Höhe");
    EXPECT_EQ(side.said, "1");
    Make(32510);
    Then([](QWidget& window) { Press(window, Qt::Key_Escape); });
    EXPECT_FALSE(side.dialog->Run());
    EXPECT_EQ(side.said, "2");
    Make(32520);
    Then([](QWidget& window) { Press(window, Qt::Key_Escape); });
    EXPECT_FALSE(side.dialog->Run());
    EXPECT_EQ(side.said, "close") << "its second item is no button";
    Make(32520);
    Then([](QWidget& window) { window.findChild<QPushButton*>()->click(); });
    EXPECT_TRUE(side.dialog->Run());
}

TEST_F(DialogTest, AnAnswerSavesShowingIt) {
    QStringList texts;
    std::optional<DialogAnswer> answer = DialogAnswer();
    driver.SetOnDialog([&](const ShownDialog& dialog) {
        texts = dialog.texts;
        return answer;
    });
    auto& report = *Make(32520).dialog;
    report.SetText(2, ToUniString("Die folgenden Artikel konnten nicht veroeffentlicht werden."));
    EXPECT_EQ(report.ListWidth(3), 380);
    report.SetListHeader(3, 1, "Name", 380);
    for (short row = 1; row <= 2; ++row) {
        report.AppendListRow(3);
        report.SetListCell(3, row, 1, ToUniString(row == 1 ? "Küche" : "A/B"));
    }
    EXPECT_TRUE(report.Run());
    EXPECT_THAT(texts,
                ElementsAre("Publishing", "OK", "Die folgenden Artikel konnten nicht veroeffentlicht werden.",
                            "Name", "Küche", "A/B"));

    answer->text = "Name";
    EXPECT_TRUE(Make(32510).dialog->Run());
    EXPECT_EQ(hostkit::ToUtf8(side.dialog->Text(3)), "Name");
    Make(32510).refuses = true;
    EXPECT_FALSE(side.dialog->Run()) << "left open, it is cancelled";
    EXPECT_EQ(side.said, "12");
    answer->item = 0;
    EXPECT_FALSE(Make(32510).dialog->Run());
}

class NavigatorDockTest : public HeadlessApplicationTest {
  protected:
    // The set's or its item's row.
    static QTreeWidgetItem& Row(const QTreeWidget& tree, int set, int item = -1) {
        QTreeWidgetItem* row = tree.topLevelItem(set);
        return item < 0 ? *row : *row->child(item);
    }
    OffscreenApplication qt;
};

TEST_F(NavigatorDockTest, ShowsWhatThereIsAndPublishesWhatIsChosen) {
    Settings settings = application->GetSettings();
    settings.language = Language::german;
    application.reset();
    application = std::make_unique<Application>(settings, queue, driver);
    NavigatorDock dock(*application);
    const auto& tree = *dock.findChild<QTreeWidget*>();
    const auto& button = *dock.findChild<QPushButton*>();
    EXPECT_EQ(tree.topLevelItemCount(), 0);
    OpenSample();
    ASSERT_EQ(tree.topLevelItemCount(), 3);
    EXPECT_EQ(Row(tree, 0).text(0), "Grundrisse");
    EXPECT_EQ(Row(tree, 0, 2).text(0), "Dachterrasse (Obergeschoß) (PDF)");
    EXPECT_FALSE(button.isEnabled());

    emit const_cast<QTreeWidget&>(tree).itemDoubleClicked(&Row(tree, 0, 2), 0);
    EXPECT_EQ(application->Front(), (FrontWindow{FrontWindow::Kind::plan, 1}));
    emit const_cast<QTreeWidget&>(tree).itemDoubleClicked(&Row(tree, 1, 2), 0);
    EXPECT_EQ(application->Front().kind, FrontWindow::Kind::model);
    EXPECT_LT(application->ShownCount(), application->OpenProject().Elements().size()) << "one storey";

    for (QTreeWidgetItem* row : {&Row(tree, 2), &Row(tree, 2, 0), &Row(tree, 0, 0)})
        row->setSelected(true);
    EXPECT_TRUE(button.isEnabled());
    QString summary;
    QObject::connect(&dock, &NavigatorDock::published, [&](const QString& text) { summary = text; });
    dock.PublishInto(folder / "out");
    EXPECT_TRUE(summary.startsWith("2 Dateien"));
    EXPECT_TRUE(std::filesystem::exists(folder / "out" / "Erdgeschoss (PDF).pdf"));
    EXPECT_TRUE(std::filesystem::exists(folder / "out" / "Gartenpavillon.ifc"));
    struct Stopper : ApplicationObserver {
        bool Working(const std::string&, double fraction) override { return (last = fraction) < 0; }
        double last = 0;
    } stopper;
    application->Watch(stopper);
    dock.PublishInto(folder / "out");
    application->Unwatch(stopper);
    EXPECT_TRUE(summary.startsWith("Abgebrochen: 0 Dateien")) << summary.toStdString();
    EXPECT_EQ(stopper.last, 1) << "the progress window goes";
    step::WriteFile(folder / "file", "");
    dock.PublishInto(folder / "file" / "out");
    ASSERT_EQ(driver.Alerts().size(), 1U);
    EXPECT_EQ(driver.Alerts()[0].large, GS::UniString("Nicht alles konnte publiziert werden."));
}

}  // namespace
}  // namespace workbench
