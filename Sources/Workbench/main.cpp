#include <unistd.h>

#include <QApplication>
#include <QCommandLineParser>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QLibraryInfo>
#include <QLocale>
#include <QStandardPaths>
#include <QTranslator>
#include <algorithm>
#include <cstdio>
#include <optional>

#include "HostKit/API/Registry.hpp"
#include "ThreadRegister.hpp"
#include "Workbench/console/Console.hpp"
#include "Workbench/console/Tour.hpp"
#include "Workbench/desktop/LocalService.hpp"
#include "Workbench/desktop/MainWindow.hpp"
#include "Workbench/desktop/QtDriver.hpp"
#include "Workbench/desktop/ScriptValues.hpp"
#include "Workbench/desktop/Style.hpp"

using namespace workbench;

namespace {

enum ExitStatus { done = 0, failed = 1, wrongUse = 2 };

struct Options {
    QString model;
    QUrl page;
    Language language = Language::english;
    std::filesystem::path dataFolder;
    std::optional<std::filesystem::path> tour;
    bool headless = false;
    bool console = false;
    bool faults = false;
    bool service = true;
};

// Messages go to standard error, but for those that mean nothing on a machine without a screen.
void PassOn(QtMsgType type, const QMessageLogContext& context, const QString& message) {
    static const char* const meaningless[] = {
        "No suitable graphics backend found", "propagateSizeHints",           "XDG_RUNTIME_DIR not set",
        "Sandboxing disabled by user",        "WebEngineContext used before", "channel.execCallbacks"};
    for (const char* const part : meaningless) {
        if (message.contains(part)) return;
    }
    if (type == QtDebugMsg || type == QtInfoMsg || qstrcmp(context.category, "qt.webenginecontext") == 0)
        return;
    std::fprintf(stderr, "%s\n", qPrintable(message));
}

// What must be set before Qt and Chromium start.
void PrepareEnvironment(int argc, char** argv) {
    const auto has = [&](const char* option) {
        return std::any_of(argv + 1, argv + argc,
                           [&](const char* argument) { return qstrcmp(argument, option) == 0; });
    };
    const bool screen = qEnvironmentVariableIsSet("DISPLAY") || qEnvironmentVariableIsSet("WAYLAND_DISPLAY");
    if (has("--headless") || !screen) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
        qunsetenv("DISPLAY");  // Chromium would try it all the same
    }
    if (geteuid() == 0)
        qputenv("QTWEBENGINE_DISABLE_SANDBOX", "1");  // it refuses to run as root; others keep it
    if (!qEnvironmentVariableIsSet("QTWEBENGINE_CHROMIUM_FLAGS")) {
        qputenv("QTWEBENGINE_CHROMIUM_FLAGS",
                "--disable-background-networking --disable-component-update --log-level=3");
    }
    QCoreApplication::setAttribute(Qt::AA_ShareOpenGLContexts);
    qInstallMessageHandler(PassOn);
}

std::optional<Language> LanguageOf(const QString& text) {
    if (text == "INT") return Language::english;
    if (text == "GER") return Language::german;
    return std::nullopt;
}

// Nothing when the words are wrong; why is said on standard error.
std::optional<Options> ReadOptions() {
    QCommandLineParser parser;
    parser.setApplicationDescription(
        "Plays the host for the Kestrane add-on: opens IFC models, shows the palette.");
    parser.addHelpOption();
    parser.addPositionalArgument("model", "An .ifc or .ifczip file to open.", "[model.ifc]");
    parser.addOptions({{"page", "Show this page in the palette instead of the built-in one.", "URL"},
                       {"language", "INT (English) or GER (German).", "LANGUAGE"},
                       {"data-dir", "Keep all files here.", "DIR"},
                       {"no-service", "Do not start the local service."},
                       {"headless", "Run without a display; alerts are reported and closed."},
                       {"tour", "Do the page's jobs in turn, leave pictures in DIR, and end.", "DIR"},
                       {"console", "Read commands from standard input, one JSON object a line."},
                       {"faults", "Allow the console to make host calls fail."}});
    if (!parser.parse(QApplication::arguments())) {
        std::fprintf(stderr, "%s See --help.\n", qPrintable(parser.errorText()));
        return std::nullopt;
    }
    if (parser.isSet("help")) parser.showHelp(done);

    Options options;
    options.language = QLocale().language() == QLocale::German ? Language::german : Language::english;
    if (parser.isSet("language")) {
        const std::optional<Language> language = LanguageOf(parser.value("language"));
        if (!language) {
            std::fprintf(stderr, "--language takes INT or GER\n");
            return std::nullopt;
        }
        options.language = *language;
    }
    if (parser.positionalArguments().size() > 1) {
        std::fprintf(stderr, "one model at a time, see --help\n");
        return std::nullopt;
    }
    options.model = parser.positionalArguments().value(0);
    options.page = QUrl::fromUserInput(parser.value("page"), QDir::currentPath());
    const QString standard =
        QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + "/kestrane-workbench";
    options.dataFolder = QDir::cleanPath(QDir::current().absoluteFilePath(
                                             parser.isSet("data-dir") ? parser.value("data-dir") : standard))
                             .toStdString();
    if (parser.isSet("tour")) options.tour = parser.value("tour").toStdString();
    options.headless = parser.isSet("headless") || QGuiApplication::platformName() == "offscreen";
    options.console = parser.isSet("console");
    options.faults = parser.isSet("faults");
    options.service = !parser.isSet("no-service");
    return options;
}

std::filesystem::path Share(const char* name) {
    return (QCoreApplication::applicationDirPath() + "/../share/kestrane/").toStdString() + name;
}

bool StartService(LocalService& service, const Options& options) {
    const QString program = QCoreApplication::applicationDirPath() + "/kestrane-service";
    const auto state =
        service.Ensure(QUrl(KESTRANE_API_BASE_URL), program, options.dataFolder / "Service", options.page);
    if (state != LocalService::State::failed) return true;
    std::fprintf(stderr, "the local service could not be started: %s\n", qPrintable(service.Error()));
    return false;
}

// Where a file that the page offers is kept.
QString AskDownloadFile(MainWindow& window, const Options& options, const QString& suggestedName) {
    if (!options.headless) return QFileDialog::getSaveFileName(&window, {}, suggestedName);
    const QString folder = QString::fromStdString((options.dataFolder / "Downloads").string());
    QDir().mkpath(folder);
    return folder + "/" + QFileInfo(suggestedName).fileName();
}

void Prepare(Application& application, QtDriver& driver, MainWindow& window, const Options& options) {
    driver.SetWindow(&window);
    driver.Browsers().page = options.page;
    driver.Browsers().storage = options.dataFolder / "Browser";
    driver.Browsers().askDownloadFile = [&window, &options](const QString& name) {
        return AskDownloadFile(window, options, name);
    };
    if (!options.headless) {
        application.SetAsksForFile(
            [&window](const std::filesystem::path& suggestion) { return window.AskForFile(suggestion); });
    } else {
        driver.SetOnAlert([](const hostkit::dg::AlertTexts& texts) {
            std::fprintf(stderr, "alert: %s %s\n", qPrintable(ToQString(texts.large)),
                         qPrintable(ToQString(texts.small)));
            return std::optional<short>(1);
        });
        driver.SetOnDialog([](const ShownDialog& dialog) {
            std::fprintf(stderr, "dialog: %s\n", qPrintable(dialog.texts.join(" | ")));
            return std::optional<DialogAnswer>(DialogAnswer());
        });
        driver.SetOnFile([](const hostkit::dg::FileQuestion& question) {
            std::fprintf(stderr, "file: %s\n", qPrintable(ToQString(question.title)));
            return std::optional(hostkit::dg::FileAnswer());
        });
    }
}

ExitStatus RunTour(Application& application, Automation& automation, const Options& options) {
    if (options.model.isEmpty()) {
        std::fprintf(stderr, "the tour needs a model\n");
        return wrongUse;
    }
    return Tour(application, automation, *options.tour).Run(options.model.toStdString()) ? done : failed;
}

// With the console or without it: until the window is closed, or the console says so.
ExitStatus RunDesktop(Application& application, Automation& automation, QtDriver& driver, MainQueue& queue,
                      const Options& options) {
    application.GetSession().GetRegistry().SendPaletteMessage(APIPalMsg_OpenPalette);
    std::optional<Console> console;
    if (options.console) {
        console.emplace(application, automation, driver, queue, options.faults);
        driver.SetOnAlert([&](const hostkit::dg::AlertTexts& texts) -> std::optional<short> {
            const std::optional<short> answer = console->OnAlert(texts);
            return answer || !options.headless ? answer : std::optional<short>(1);
        });
        driver.SetOnDialog([&](const ShownDialog& dialog) -> std::optional<DialogAnswer> {
            const std::optional<DialogAnswer> answer = console->OnDialog(dialog);
            return answer || !options.headless ? answer : DialogAnswer();
        });
        driver.SetOnFile([&](const hostkit::dg::FileQuestion& question) {
            const std::optional<hostkit::dg::FileAnswer> answer = console->OnFile(question);
            return answer || !options.headless ? answer : std::optional(hostkit::dg::FileAnswer());
        });
        console->Start();
    }
    if (!options.model.isEmpty()) queue.Post([&] { application.Open(options.model.toStdString()); });
    const int status = QApplication::exec();
    driver.SetOnAlert({});
    driver.SetOnDialog({});
    driver.SetOnFile({});
    return status == 0 ? done : failed;
}

ExitStatus Run(const Options& options) {
    LocalService service;
    if (options.service && !StartService(service, options)) return failed;

    QTranslator qtTexts;  // of its file dialogs for one
    if (options.language == Language::german &&
        qtTexts.load("qtbase_de", QLibraryInfo::path(QLibraryInfo::TranslationsPath)))
        QApplication::installTranslator(&qtTexts);

    QObject loop;
    MainQueue queue([&] {
        QMetaObject::invokeMethod(
            &loop, [&queue] { queue.RunPending(); }, Qt::QueuedConnection);
    });
    QtDriver driver(queue);
    Settings settings;
    settings.language = options.language;
    settings.dataFolder = options.dataFolder;
    settings.resourcesFolder = Share("resources");
    settings.mesher.script = Share("mesher") / "mesher.mjs";
    Application application(settings, queue, driver);
    MainWindow window(application, queue);
    Prepare(application, driver, window, options);
    if (const GSErrCode error = application.Start(); error != NoError) {
        std::fprintf(stderr, "the add-on did not start: error %d\n", error);
        return failed;
    }
    window.AddAddOnMenus();
    window.show();

    Automation automation(application, window, driver);
    if (options.tour) return RunTour(application, automation, options);
    return RunDesktop(application, automation, driver, queue, options);
}

}  // namespace

int main(int argc, char** argv) {
    PrepareEnvironment(argc, argv);
    QApplication qt(argc, argv);
    QApplication::setApplicationName("kestrane-workbench");
    ApplyStyle(qt);
    try {
        const std::optional<Options> options = ReadOptions();
        const ExitStatus status = options ? Run(*options) : wrongUse;
        if (!hostkit::ThreadRegister::Instance().WaitForAll(std::chrono::milliseconds(200))) {
            // A job still waits inside libcurl, and the libraries below it must not be unloaded under its
            // feet.
            std::fflush(nullptr);
            std::_Exit(status);
        }
        return status;
    } catch (const std::exception& exception) {
        std::fprintf(stderr, "kestrane-workbench: %s\n", exception.what());
        return failed;
    }
}
