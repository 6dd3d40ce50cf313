#include <gtest/gtest.h>

#include <QFileDialog>
#include <QTimer>

#include "Workbench/desktop/OffscreenApplication.hpp"
#include "Workbench/desktop/QtDriver.hpp"
#include "Workbench/step/StepTexts.hpp"

namespace workbench {
namespace {

// In the window that a person sees.
TEST(FileDialogTest, GivesTheFileThatWasChosen) {
    const OffscreenApplication qt;
    const step::TemporaryFolder folder;
    const auto file = step::WriteFile(folder / "Zuordnung Süd.xml", "<SchemeItemList/>");
    MainQueue queue;
    QtDriver driver(queue);
    for (const bool accepts : {true, false}) {
        QStringList seen;
        QTimer::singleShot(0, [&] {
            auto& dialog = dynamic_cast<QFileDialog&>(*QApplication::activeModalWidget());
            seen << dialog.windowTitle() << dialog.nameFilters();
            dialog.selectFile(QString::fromStdString(file.string()));
            auto& window = static_cast<QDialog&>(dialog);
            accepts ? window.accept() : window.reject();
        });
        const auto answer = driver.AskForFile({"Mapping", {{"Property Mapping File", "xml"}, {"", ""}}});
        EXPECT_EQ(answer, accepts ? std::optional(file) : std::nullopt);
        EXPECT_EQ(seen.join("|").toStdString(), "Mapping|Property Mapping File (*.xml)|* (*)");
    }
}

}  // namespace
}  // namespace workbench
