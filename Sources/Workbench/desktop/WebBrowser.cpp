#include "Workbench/desktop/WebBrowser.hpp"

#include <QFileInfo>
#include <QWebChannel>
#include <QWebEngineDownloadRequest>
#include <QWebEnginePage>
#include <QWebEngineProfile>
#include <QWebEngineScript>
#include <QWebEngineScriptCollection>
#include <QWebEngineView>

#include "Workbench/desktop/ScriptValues.hpp"

namespace workbench {

WebBrowser::WebBrowser(QWidget* parent, MainQueue& queue, const BrowserOptions& options)
    : queue(queue),
      options(options),
      bridge(queue),
      profile(new QWebEngineProfile("palette")),
      view(new QWebEngineView(parent)),
      self(std::make_shared<WebBrowser*>(this)) {
    const QString storage = QString::fromStdString(options.storage.string());
    profile->setPersistentStoragePath(storage);
    profile->setCachePath(storage + "/Cache");
    view->setPage(new QWebEnginePage(profile.get(), view));
    auto* channel = new QWebChannel(view);
    channel->registerObject("host", &bridge);
    view->page()->setWebChannel(channel);
    QObject::connect(profile.get(), &QWebEngineProfile::downloadRequested, view,
                     [this](QWebEngineDownloadRequest* request) { Download(request); });
    QObject::connect(view, &QWebEngineView::loadStarted, view, [this] {
        loading = true;
        bridge.AbandonEvaluations();
    });
    QObject::connect(view, &QWebEngineView::loadFinished, view, [this] { loading = false; });
    view->show();
}

WebBrowser::~WebBrowser() {
    *self = nullptr;
    delete view;
}

void WebBrowser::LoadURL(const GS::UniString& url) {
    const QUrl target = options.page.isEmpty() ? QUrl(ToQString(url)) : options.page;
    loading = true;
    // Begun from the queue, so that an object registered right after this call is there before the page's
    // scripts.
    queue.Post([self = self, target] {
        if (*self != nullptr) (*self)->view->load(target);
    });
}

void WebBrowser::LoadHTML(const GS::UniString& html) {
    loading = true;
    queue.Post([self = self, text = ToQString(html)] {
        if (*self != nullptr) (*self)->view->setHtml(text);
    });
}

void WebBrowser::ExecuteJS(const GS::UniString& script) {
    queue.Post([self = self, text = ToQString(script)] {
        if (*self == nullptr) return;
        if ((*self)->options.onPageCall) (*self)->options.onPageCall(text);
        (*self)->view->page()->runJavaScript(text);
    });
}

bool WebBrowser::RegisterAsynchJSObject(const GS::Ref<DG::JSObject>& object) {
    bridge.SetObject(object);
    QWebEngineScript script;
    script.setName("host");
    script.setInjectionPoint(QWebEngineScript::DocumentCreation);
    script.setWorldId(QWebEngineScript::MainWorld);
    script.setSourceCode(bridge.InjectedScript());
    view->page()->scripts().insert(script);
    return true;
}

void WebBrowser::DisableContextMenu() {
    view->setContextMenuPolicy(Qt::NoContextMenu);
}

void WebBrowser::Resize(short horizontally, short vertically) {
    view->resize(view->width() + horizontally, view->height() + vertically);
}

void WebBrowser::Evaluate(const QString& script, PageBridge::OnResult onResult) {
    view->page()->runJavaScript(bridge.EvaluationScript(script, std::move(onResult)),
                                [self = self](const QVariant& started) {
                                    if (*self != nullptr && !started.toBool())
                                        (*self)->bridge.AbandonEvaluations();
                                });
}

void WebBrowser::Download(QWebEngineDownloadRequest* request) {
    const QString file =
        options.askDownloadFile ? options.askDownloadFile(request->downloadFileName()) : QString();
    if (file.isEmpty()) {
        request->cancel();
        return;
    }
    request->setDownloadDirectory(QFileInfo(file).path());
    request->setDownloadFileName(QFileInfo(file).fileName());
    request->accept();
}

}  // namespace workbench
