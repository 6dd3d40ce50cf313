#pragma once

#include <map>
#include <memory>
#include <mutex>
#include <vector>

#include "DGPanel.hpp"
#include "HostKit/API/Session.hpp"

namespace DG {
class Item;
}

namespace hostkit::dg {

// The inside of a DG::Panel, which the items on it share. Main thread only.
class PanelState : public SessionPart {
  public:
    // What shows the panel, as the kind that it is; null when nothing does (any more).
    virtual PalettePeer* Palette() const { return nullptr; }
    virtual DialogPeer* Dialog() const { return nullptr; }

    std::vector<DG::PanelObserver*> observers;
    std::vector<DG::CompoundItemObserver*> itemObservers;
    std::map<short, DG::Item*> items;  // by their numbers
    bool processesEvents = false;

  protected:
    // Observers may come and go while they are told; none while events are not processed.
    std::vector<DG::PanelObserver*> Listeners() const;

    // True when no observer objects.
    bool AsksToClose(bool accepting) const;
};

class PaletteState : public PanelState, public PaletteEvents {
  public:
    // The peer for a dialog resource; none without a session or a resource.
    static std::shared_ptr<PaletteState> Make(GSResID dialog);

    PalettePeer* Palette() const override { return peer.get(); }

    void UserResized(short horizontalChange, short verticalChange) override;
    bool UserRequestedClose() override;
    void SessionEnds() override { peer.reset(); }

  private:
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
