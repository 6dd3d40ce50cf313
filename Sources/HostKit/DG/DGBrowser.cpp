#include "DGBrowser.hpp"

#include "HostKit/DG/PanelState.hpp"

namespace DG {

using hostkit::dg::BrowserPeer;
using hostkit::dg::BrowserState;

BrowserBase::BrowserBase(const Reference& panel, short item)
    : state(BrowserState::Make(*panel.Panel(), item)) {}

BrowserBase::~BrowserBase() {
    state->SessionEnds();
}

void BrowserBase::LoadURL(const GS::UniString& url) {
    state->WithPeer([&](BrowserPeer& peer) { peer.LoadURL(url); });
}

void BrowserBase::LoadHTML(const GS::UniString& html) {
    state->WithPeer([&](BrowserPeer& peer) { peer.LoadHTML(html); });
}

bool BrowserBase::ExecuteJS(const GS::UniString& script) {
    const std::shared_ptr<BrowserState> kept = state;
    return kept->WithPeer([&](BrowserPeer& peer) { peer.ExecuteJS(script); });
}

bool BrowserBase::RegisterAsynchJSObject(GS::Ref<JSObject> object) {
    bool registered = false;
    state->WithPeer([&](BrowserPeer& peer) { registered = peer.RegisterAsynchJSObject(object); });
    return registered;
}

void BrowserBase::DisableContextMenu() {
    state->WithPeer([](BrowserPeer& peer) { peer.DisableContextMenu(); });
}

void BrowserBase::Resize(short horizontalChange, short verticalChange) {
    state->WithPeer([&](BrowserPeer& peer) { peer.Resize(horizontalChange, verticalChange); });
}

}  // namespace DG
