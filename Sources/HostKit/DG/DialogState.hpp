#pragma once

#include "HostKit/DG/PanelState.hpp"

namespace hostkit::dg {

// The inside of a DG::ModalDialog. Events count only while it runs.
class DialogState : public PanelState, public DialogEvents {
  public:
    // The peer for a dialog resource; none without a session, a resource or somebody to see it.
    static std::shared_ptr<DialogState> Make(GSResID dialog);

    DialogPeer* Dialog() const override { return peer.get(); }

    // Shows the dialog until it ends; whether it was accepted.
    bool Run();

    void UserClicked(short item) override;
    void UserRequestedClose(bool accepting) override;
    void SessionEnds() override { peer.reset(); }

  private:
    std::unique_ptr<DialogPeer> peer;
};

}  // namespace hostkit::dg
