#pragma once

#include <memory>
#include <mutex>
#include <vector>

#include "DGPanel.hpp"
#include "HostKit/API/Session.hpp"

namespace hostkit::dg {

// The inside of a DG::Panel, which the items on it share. Main thread only.
class PanelState : public PaletteEvents, public SessionPart {
  public:
    // The peer for a dialog resource; none without a session or a resource.
    static std::shared_ptr<PanelState> Make(GSResID dialog);

    // Null when nothing shows the panel (any more).
    PalettePeer* Peer() const { return peer.get(); }

    std::vector<DG::PanelObserver*> observers;
    bool processesEvents = false;

    void UserResized(short horizontalChange, short verticalChange) override;
    bool UserRequestedClose() override;
    void SessionEnds() override { peer.reset(); }

  private:
    std::vector<DG::PanelObserver*> Listeners() const;

    std::unique_ptr<PalettePeer> peer;
};

// The inside of a DG::Browser. Scripts come from any thread, so whoever uses the peer holds the lock.
class BrowserState : public SessionPart {
  public:
    static std::shared_ptr<BrowserState> Make(PanelState& panel, short item);

    // Calls "use" with the peer; false when there is none (any more).
    template <class Use>
    bool WithPeer(Use use) {
        const std::lock_guard lock(mutex);
        if (peer == nullptr) return false;
        use(*peer);
        return true;
    }

    void SessionEnds() override;

  private:
    std::mutex mutex;
    std::unique_ptr<BrowserPeer> peer;
};

}  // namespace hostkit::dg
