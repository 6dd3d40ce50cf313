#pragma once

#include <memory>

#include "DGBrowserJSHandler.hpp"
#include "DGPanel.hpp"

namespace hostkit::dg {
class BrowserState;
}

namespace DG {

// A web page as a dialog item. Main thread only, but for ExecuteJS.
class BrowserBase {
  public:
    virtual ~BrowserBase();
    BrowserBase(const BrowserBase&) = delete;
    BrowserBase& operator=(const BrowserBase&) = delete;

    // Both return at once; the page appears when it has been read.
    void LoadURL(const GS::UniString& url);
    void LoadHTML(const GS::UniString& html);

    // Hands a script to the page, in the order of the calls. From any thread; false, and nothing done, when
    // the palette or the host is gone.
    bool ExecuteJS(const GS::UniString& script);

    // Makes the object a global of the page, under its name.
    bool RegisterAsynchJSObject(GS::Ref<JSObject> object);

    void DisableContextMenu();
    void Resize(short horizontalChange, short verticalChange);

  protected:
    BrowserBase(const Reference& panel, short item);

  private:
    std::shared_ptr<hostkit::dg::BrowserState> state;
};

class Browser : public BrowserBase {
  public:
    Browser(const Reference& panel, short item) : BrowserBase(panel, item) {}
    Browser(const Panel& panel, short item) : BrowserBase(panel.GetReference(), item) {}
};

}  // namespace DG
