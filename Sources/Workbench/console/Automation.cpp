#include "Workbench/console/Automation.hpp"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QTimer>
#include <memory>

namespace workbench {

bool Automation::WaitFor(const std::function<bool()>& done, std::chrono::milliseconds timeout) {
    QElapsedTimer waited;
    waited.start();
    QEventLoop loop;
    QTimer look;
    QObject::connect(&look, &QTimer::timeout, &loop, [&] {
        if (done() || waited.elapsed() > timeout.count()) loop.quit();
    });
    look.start(10);
    if (!done()) loop.exec();
    return done();
}

void Automation::Open(const std::filesystem::path& file) {
    if (!application.Open(file)) throw AutomationError("the model was not opened: " + file.string());
    WaitForShapes();
}

void Automation::WaitForShapes() {
    if (!WaitFor([this] { return IsSettled() && !application.IsShaping(); }, std::chrono::minutes(10))) {
        throw AutomationError("the shapes did not come: " + application.OpenProject().Name());
    }
}

void Automation::Undo(std::size_t steps) {
    application.Undo(steps);
    if (!WaitFor([this] { return IsSettled(); }, std::chrono::minutes(10)))
        throw AutomationError("the elements did not go");
}

void Automation::Redo(std::size_t steps) {
    application.Redo(steps);
    if (!WaitFor([this] { return IsSettled(); }, std::chrono::minutes(10)))
        throw AutomationError("the elements did not come");
}

std::string Automation::Evaluate(const std::string& script, std::chrono::milliseconds timeout) {
    if (driver.Browser() == nullptr) throw AutomationError("the palette has not been opened yet");
    if (!WaitFor([this] { return !driver.Browser()->IsLoading(); }, timeout)) {
        throw AutomationError("the page does not come");
    }

    struct Answer {
        bool there = false;
        bool failed = false;
        std::string text;
    };
    const auto answer = std::make_shared<Answer>();  // a late answer must find its place
    driver.Browser()->Evaluate(QString::fromStdString(script), [answer](bool failed, const QString& text) {
        *answer = {true, failed, text.toStdString()};
    });
    if (!WaitFor([&] { return answer->there; }, timeout)) throw AutomationError("the page did not answer");
    if (answer->failed) throw AutomationError(answer->text);
    return answer->text;
}

void Automation::WaitForPage(const std::string& condition, std::chrono::milliseconds timeout) {
    QElapsedTimer waited;
    waited.start();
    while (true) {
        try {
            if (Evaluate("Boolean(" + condition + ")", std::chrono::seconds(5)) == "true") return;
        } catch (const AutomationError&) {
            // The page may just be loading: asked again until the time is up.
        }
        if (waited.elapsed() > timeout.count())
            throw AutomationError("the page did not come to: " + condition);
        WaitFor([] { return false; }, std::chrono::milliseconds(50));
    }
}

void Automation::SavePicture(const std::string& of, const std::filesystem::path& file) {
    QImage picture;
    if (of == "window") {
        QCoreApplication::sendPostedEvents(nullptr, QEvent::LayoutRequest);  // what was just shown or hidden
        window.Area().Settle();
        picture = window.grab().toImage();
    } else if (of == "palette" && driver.Dock() != nullptr) {
        picture = driver.Dock()->grab().toImage();
    } else if (of == "3d") {
        picture = application.Picture3D();
    } else if (of == "plan") {
        picture = application.PicturePlan();
    } else {
        throw AutomationError("there is no picture of \"" + of + "\"");
    }
    if (picture.isNull() || !picture.save(QString::fromStdString(file.string()), "PNG")) {
        throw AutomationError("the picture could not be written: " + file.string());
    }
}

void Automation::AnswerFile(const std::filesystem::path& file) {
    driver.SetOnFile(
        [file](const hostkit::dg::FileQuestion&) { return std::optional(hostkit::dg::FileAnswer(file)); });
}

void Automation::AnswerName(const std::string& text) {
    driver.SetOnDialog([text = QString::fromStdString(text)](const ShownDialog&) {
        return std::optional(DialogAnswer{.item = 1, .text = text});
    });
}

}  // namespace workbench
