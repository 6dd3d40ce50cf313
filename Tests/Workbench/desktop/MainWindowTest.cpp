// What a person sees of the project's state: the Edit menu, the title, the element list, recent files.

#include "Workbench/desktop/MainWindow.hpp"

#include <gmock/gmock.h>

#include <QAction>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMenuBar>
#include <QScrollBar>
#include <QTimer>
#include <QTreeView>

#include "ACAPinc.h"
#include "Workbench/HeadlessApplication.hpp"
#include "Workbench/desktop/ElementDock.hpp"
#include "Workbench/desktop/OffscreenApplication.hpp"
#include "Workbench/desktop/QtDriver.hpp"

namespace workbench {
namespace {

using testing::ElementsAre;

class MainWindowTest : public HeadlessApplicationTest {
  protected:
    void Begin(Language language = Language::english) {
        Settings settings = application->GetSettings();
        settings.language = language;
        window.reset();
        application.reset();
        application = std::make_unique<Application>(settings, queue, driver);
        window = std::make_unique<MainWindow>(*application, queue);
        window->show();
    }
    void SetUp() override {
        HeadlessApplicationTest::SetUp();
        Begin();
    }
    void TearDown() override {
        window.reset();
        HeadlessApplicationTest::TearDown();
    }
    void Settle() {
        ASSERT_TRUE(queue.RunUntil(
            [this] { return !application->History().IsOutdated() && !application->IsShaping(); },
            std::chrono::minutes(1)));
        queue.RunPending();
        QApplication::processEvents();
    }

    const Element& Named(const std::string& name) const {
        for (const Element& element : application->OpenProject().Elements())
            if (element.name == name) return element;
        throw std::invalid_argument("no element is named " + name);
    }
    // Steps of this name, each with a copy of an element.
    void Create(const char* name, int steps = 1) {
        API_Element table = {};
        table.header.guid = Named("Tisch").guid;
        ASSERT_EQ(ACAPI_Element_Get(&table), NoError);
        for (; steps > 0; --steps) {
            API_Element copy = table;
            ASSERT_EQ(ACAPI_CallUndoableCommand(name, [&] { return ACAPI_Element_Create(&copy, nullptr); }),
                      NoError);
        }
        Settle();
    }

    QMenu& Menu(int at) const { return *window->menuBar()->actions().at(at)->menu(); }
    // Of the Edit menu; those that cannot be chosen in brackets.
    std::vector<std::string> EditTexts() const {
        std::vector<std::string> texts;
        for (const QAction* action : Menu(1).actions()) {
            if (action->isSeparator()) continue;
            const QString text = action->isEnabled() ? action->text() : "[" + action->text() + "]";
            texts.push_back(text.toStdString());
        }
        return texts;
    }

    OffscreenApplication qt;
    std::unique_ptr<MainWindow> window;
};

TEST_F(MainWindowTest, TheEditMenuNamesWhatItUndoes) {
    for (const bool german : {false, true}) {
        Begin(german ? Language::german : Language::english);
        OpenSample();
        const std::size_t count = application->OpenProject().Elements().size();
        Create("Create Element", 2);
        Create("Doors & Windows");
        EXPECT_THAT(EditTexts(),
                    german ? ElementsAre("&Rückgängig: Doors && Windows", "[&Wiederholen]",
                                         "&Alle 3 Schritte rückgängig", "[A&lle Schritte wiederholen]")
                           : ElementsAre("&Undo Doors && Windows", "[&Redo]", "Undo &All 3 Steps",
                                         "[Redo A&ll Steps]"));
        Menu(1).actions().first()->trigger();
        Settle();
        EXPECT_THAT(EditTexts(),
                    german ? ElementsAre("&Rückgängig: Create Element", "&Wiederholen: Doors && Windows",
                                         "&Alle 2 Schritte rückgängig", "[A&lle Schritte wiederholen]")
                           : ElementsAre("&Undo Create Element", "&Redo Doors && Windows",
                                         "Undo &All 2 Steps", "[Redo A&ll Steps]"));
        Menu(1).actions().at(3)->trigger();
        Settle();
        EXPECT_EQ(EditTexts().front(), german ? "[&Rückgängig]" : "[&Undo]");
        EXPECT_EQ(application->OpenProject().Elements().size(), count);
        Menu(1).actions().at(4)->trigger();
        Settle();
        EXPECT_GE(application->OpenProject().Elements().size(), count + 3);
    }
}

TEST_F(MainWindowTest, TheTitleMarksUnsavedChangesAndClosingAsks) {
    constexpr short discard = 2, cancel = 3;
    OpenSample();
    EXPECT_FALSE(window->isWindowModified());
    EXPECT_TRUE(window->windowTitle().contains("[*]"));
    Create("Create Element");
    EXPECT_TRUE(window->isWindowModified());
    driver.QueueAlertAnswer(cancel);
    EXPECT_FALSE(window->close());
    EXPECT_TRUE(window->isVisible());
    driver.QueueAlertAnswer(discard);
    EXPECT_TRUE(window->close());
    ASSERT_TRUE(application->Save(folder / "saved.ifc"));
    queue.RunPending();
    EXPECT_FALSE(window->isWindowModified());
    const std::size_t asked = driver.Alerts().size();
    EXPECT_TRUE(window->close());
    EXPECT_EQ(driver.Alerts().size(), asked);
}

TEST_F(MainWindowTest, AnEditLeavesTheElementListAsItWas) {
    OpenSample();
    auto& list = *window->findChild<ElementDock*>()->findChild<QTreeView*>();
    list.setFixedHeight(120);
    const auto storey = [&](int row) { return list.model()->index(row, 0); };
    ASSERT_GE(list.model()->rowCount(), 2);
    list.collapse(storey(1));
    window->findChild<ElementDock*>()->findChild<QLineEdit*>()->setText("0");
    application->Select(std::vector{Named("Bodenplatte").guid});
    QApplication::processEvents();
    list.verticalScrollBar()->setValue(2);
    const QString topRow = list.indexAt({0, 0}).data().toString();
    const int rows = list.model()->rowCount(storey(0));
    ASSERT_EQ(list.verticalScrollBar()->value(), 2);

    Create("Create Element");
    EXPECT_EQ(list.model()->rowCount(storey(0)), rows + 1);
    EXPECT_TRUE(list.isExpanded(storey(0)));
    EXPECT_FALSE(list.isExpanded(storey(1)));
    EXPECT_EQ(list.indexAt({0, 0}).data().toString(), topRow);
    EXPECT_THAT(application->Selection(), ElementsAre(&Named("Bodenplatte")));
    ASSERT_EQ(list.selectionModel()->selectedRows().size(), 1);
    EXPECT_EQ(list.selectionModel()->selectedRows().front().data().toString().toStdString(), "BP-01");
}

TEST_F(MainWindowTest, OnlyThePersonsFilesAreRecent) {
    const auto recent = [&] {
        for (const QAction* action : Menu(0).actions())
            if (action->menu() != nullptr) return action->menu()->actions().size();
        return qsizetype{-1};
    };
    const auto copyTo = [&](const std::filesystem::path& place) {
        std::filesystem::create_directories(place);
        std::filesystem::copy_file(std::filesystem::path(KESTRANE_SAMPLES) / "Gartenpavillon.ifc",
                                   place / "model.ifc");
        return place / "model.ifc";
    };
    ASSERT_TRUE(application->Open(copyTo(folder / "data" / "Downloaded")));
    EXPECT_EQ(recent(), 0);
    ASSERT_TRUE(application->Open(copyTo(folder / "database")));
    EXPECT_EQ(recent(), 1);
}

TEST(QtDriverTest, ReturnAndEscapeMeanTheFirstAndTheLastButton) {
    const OffscreenApplication qt;
    MainQueue queue;
    QtDriver driver(queue);
    const hostkit::dg::AlertTexts one{"Text", "", {"OK", "", ""}};
    const hostkit::dg::AlertTexts three{"Text", "", {"Save", "Don't Save", "Cancel"}};
    for (const auto& [texts, key, answer] : {std::tuple(one, Qt::Key_Escape, 1),
                                             {one, Qt::Key_Return, 1},
                                             {three, Qt::Key_Escape, 3},
                                             {three, Qt::Key_Return, 1}}) {
        QTimer::singleShot(0, [key = key] {
            QKeyEvent event(QEvent::KeyPress, key, Qt::NoModifier);
            QApplication::sendEvent(QApplication::activeModalWidget(), &event);
        });
        EXPECT_EQ(driver.Alert(texts), answer) << key;
    }
}

}  // namespace
}  // namespace workbench
