#pragma once

#include <QPointer>
#include <QUrl>
#include <QWebEngineProfile>
#include <QWebEngineView>
#include <filesystem>
#include <functional>
#include <memory>

#include "HostKit/DG/Driver.hpp"
#include "Workbench/api/MainQueue.hpp"
#include "Workbench/desktop/PageBridge.hpp"

class QWebEngineDownloadRequest;

namespace workbench {

/// What the desktop adds to every browser control.
struct BrowserOptions {
    std::filesystem::path storage;  // what pages keep (local storage, cache)
    QUrl page;                      // shown instead of the add-on's own page, when not empty
    std::function<void(const QString& script)> onPageCall;
    /// Where to keep a file that the page offers; empty to refuse it.
    std::function<QString(const QString& suggestedName)> askDownloadFile;
};

/// A browser control of the host's dialogs: Chromium in a widget.
class WebBrowser : public hostkit::dg::BrowserPeer {
  public:
    WebBrowser(QWidget* parent, MainQueue& queue, const BrowserOptions& options);
    ~WebBrowser() override;

    void LoadURL(const GS::UniString& url) override;
    void LoadHTML(const GS::UniString& html) override;
    void ExecuteJS(const GS::UniString& script) override;
    bool RegisterAsynchJSObject(const GS::Ref<DG::JSObject>& object) override;
    void DisableContextMenu() override;
    void Resize(short horizontally, short vertically) override;

    /// Evaluates a script in the page and waits for a promise, see PageBridge.
    void Evaluate(const QString& script, PageBridge::OnResult onResult);
    /// From the order to load a page until it is there, or has failed.
    bool IsLoading() const { return loading; }
    QWebEngineView* View() const { return view; }

  private:
    void Download(QWebEngineDownloadRequest* request);

    MainQueue& queue;
    const BrowserOptions& options;
    PageBridge bridge;
    std::unique_ptr<QWebEngineProfile> profile;
    QPointer<QWebEngineView> view;
    bool loading = false;
    std::shared_ptr<WebBrowser*> self;  // emptied when the control goes, for calls still in the queue
};

}  // namespace workbench
