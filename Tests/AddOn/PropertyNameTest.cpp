#include <QKeyEvent>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QTimer>

#include "AddOn/PlayedHost.hpp"
#include "Workbench/desktop/OffscreenApplication.hpp"
#include "Workbench/desktop/QtDriver.hpp"
#include "dialogs/PropertyNameDialog.hpp"

namespace tests {

using PropertyNameTest = PlayedHostTest;

TEST_F(PropertyNameTest, TheNameIsWhatWasAcceptedAndFree) {
    GS::Ref<DG::JSArray> used = new DG::JSArray();
    for (const char* name : {"Höhe", "", "Breite"})
        used->AddItem(Text(name));
    const std::tuple<short, const char*, const char*, std::size_t> cases[] = {
        {1, "Länge", "Länge", 0},     {1, "höhe", "höhe", 0}, {1, " Höhe", " Höhe", 0},
        {1, "Breite ", "Breite ", 0}, {1, "", "", 0},         {2, "Länge", "", 0},
        {3, "Länge", "", 0},          {1, "Höhe", "", 1},     {1, "Breite", "", 1}};
    std::size_t alerts = 0;
    for (const auto& [item, typed, expected, told] : cases) {
        driver.QueueDialogAnswer(item, {{3, typed}});
        const auto name = GS::DynamicCast<DG::JSValue>(Call("SetNewPropertyName", used));
        EXPECT_EQ(ToText(name->GetString()), expected) << typed;
        EXPECT_EQ(driver.Alerts().size(), alerts += told) << typed;
    }
    EXPECT_EQ(driver.Alerts()[0].large, "The property name exists.");
    EXPECT_EQ(driver.Alerts()[0].buttons[0], "Ok");
    driver.QueueDialogAnswer(std::nullopt);
    EXPECT_EQ(ToText(GS::DynamicCast<DG::JSValue>(Call("SetNewPropertyName"))->GetString()), "");
}

// Types into the field of the window that is shown.
void Type(const char* text, Qt::Key key) {
    auto* field = QApplication::activeModalWidget()->findChild<QLineEdit*>();
    field->setText(text);
    QKeyEvent event(QEvent::KeyPress, key, Qt::NoModifier);
    QApplication::sendEvent(field, &event);
}

// In the window that a person sees: a taken name is told and the dialog stays, a free one is accepted.
TEST(PropertyNameWindowTest, InItsWindow) {
    const workbench::OffscreenApplication qt;
    for (const auto& [language, texts] : {std::pair("INT", "Name of the New Property|Cancel|OK"),
                                          std::pair("GER", "Name der neuen Eigenschaft|Abbrechen|OK")}) {
        workbench::MainQueue queue;
        workbench::QtDriver driver(queue);
        hostkit::Host host;
        const auto resources = std::filesystem::path(KESTRANE_SHARE) / "resources";
        const hostkit::Session session(host, driver, hostkit::Resources::Load(resources, language));
        for (const bool accepts : {true, false}) {
            QStringList seen;
            QTimer::singleShot(0, [&] {
                auto* window = QApplication::activeModalWidget();
                seen << window->windowTitle();
                for (const auto* button : window->findChildren<QPushButton*>())
                    seen << button->text();
                Type("Höhe", Qt::Key_Return);
                EXPECT_TRUE(window->isVisible());
                Type(QString(300, 'x').toUtf8(), Qt::Key_Shift);
                EXPECT_EQ(window->findChild<QLineEdit*>()->text().size(), 255);
                Type(" Höhe", accepts ? Qt::Key_Return : Qt::Key_Escape);
            });
            QTimer::singleShot(0, [&] {
                auto& alert = dynamic_cast<QMessageBox&>(*QApplication::activeModalWidget());
                seen << alert.text() << alert.buttons().at(0)->text();
                alert.accept();
            });
            PropertyNameDialog dialog({"Höhe"});
            EXPECT_EQ(dialog.Invoke(), accepts);
            EXPECT_EQ(ToText(dialog.GetNewPropertyName()), accepts ? " Höhe" : "");
            EXPECT_EQ(seen.join("|").toStdString(), std::string(texts) + "|The property name exists.|Ok");
        }
    }
}

}  // namespace tests
