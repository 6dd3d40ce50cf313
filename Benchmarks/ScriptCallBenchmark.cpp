// The round trip of a script function, page -> add-on's function -> page, beside a bare web channel call.

#include <unistd.h>

#include <QApplication>
#include <QEventLoop>
#include <QFile>
#include <QTimer>
#include <QWebChannel>
#include <QWebEnginePage>
#include <QWebEngineScript>
#include <QWebEngineScriptCollection>
#include <cstdio>

#include "Workbench/desktop/WebBrowser.hpp"

namespace {

const int rounds = 7;
const int callsPerRound = 1000;

class Bare : public QObject {
    Q_OBJECT

  public:
    Q_INVOKABLE QVariant echo(const QVariant& value) { return value; }
};

// Microseconds of one call, as the page measures them.
const char* const measure = R"js((async () => {
    const call = await %1;
    const begin = performance.now();
    for (let i = 0; i < %2; ++i) await call("text");
    window.result = (performance.now() - begin) * 1000 / %2;
})(); window.result = undefined;)js";

double Run(QWebEnginePage& page, const QString& call) {
    double microseconds = 0;
    QEventLoop loop;
    QTimer look;
    page.runJavaScript(QString(measure).arg(call).arg(callsPerRound));
    QObject::connect(&look, &QTimer::timeout, [&] {
        page.runJavaScript("window.result", [&](const QVariant& result) {
            if (!result.isValid()) return;
            microseconds = result.toDouble();
            loop.quit();
        });
    });
    look.start(100);
    loop.exec();
    return microseconds;
}

void LoadAndWait(QWebEngineView& view) {
    QEventLoop loop;
    QObject::connect(&view, &QWebEngineView::loadFinished, &loop, &QEventLoop::quit);
    loop.exec();
}

}  // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qunsetenv("DISPLAY");
    if (geteuid() == 0) qputenv("QTWEBENGINE_DISABLE_SANDBOX", "1");
    qputenv("QT_LOGGING_RULES", "*.info=false;*.debug=false;qt.webenginecontext.*=false");
    QCoreApplication::setAttribute(Qt::AA_ShareOpenGLContexts);
    QApplication application(argc, argv);

    workbench::MainQueue queue([&] {
        QMetaObject::invokeMethod(
            &application, [&] { queue.RunPending(); }, Qt::QueuedConnection);
    });
    const workbench::BrowserOptions options;
    workbench::WebBrowser browser(nullptr, queue, options);
    GS::Ref<DG::JSObject> object = new DG::JSObject("HOST");
    object->AddItem(new DG::JSFunction("Echo", [](GS::Ref<DG::JSBase> value) { return value; }));
    browser.LoadURL("about:blank");
    browser.RegisterAsynchJSObject(object);
    LoadAndWait(*browser.View());

    QWebEngineView plain;
    QWebChannel channel;
    Bare bare;
    channel.registerObject("bare", &bare);
    plain.page()->setWebChannel(&channel);
    QFile library(":/qtwebchannel/qwebchannel.js");
    if (!library.open(QIODevice::ReadOnly)) return 1;
    QWebEngineScript script;
    script.setInjectionPoint(QWebEngineScript::DocumentCreation);
    script.setWorldId(QWebEngineScript::MainWorld);
    script.setSourceCode(
        QString::fromUtf8(library.readAll()) +
        "window.bare = new Promise(done => new QWebChannel(qt.webChannelTransport, channel => "
        "done(value => channel.objects.bare.echo(value))));");
    plain.page()->scripts().insert(script);
    plain.load(QUrl("about:blank"));
    LoadAndWait(plain);

    double best = 1e9;
    double bestBare = 1e9;
    for (int round = 0; round < rounds; ++round) {  // in turns, so that both see the same machine
        bestBare = std::min(bestBare, Run(*plain.page(), "window.bare"));
        best = std::min(best, Run(*browser.View()->page(), "HOST.Echo"));
    }
    std::printf("script call: %.1f us, bare web channel call: %.1f us, ratio %.2f\n", best, bestBare,
                best / bestBare);
    return 0;
}

#include "ScriptCallBenchmark.moc"
