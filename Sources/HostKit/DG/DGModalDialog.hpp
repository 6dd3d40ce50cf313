#pragma once

#include "DGPanel.hpp"

namespace hostkit::dg {
class DialogState;
}

namespace DG {

// A dialog that the person must leave before anything else can be done.
class ModalDialog : public Panel {
  public:
    enum CloseRequest { Accept, Cancel };

    // The second module is that of icons.
    ModalDialog(GSResModule dialogModule, GSResID dialog, GSResModule iconModule);

    // Shows the dialog and waits until it is closed: true when it was accepted. False at once when nobody can
    // see it.
    bool Invoke();

    // Closes the dialog, unless an observer objects; Invoke then answers accordingly. Does nothing when it is
    // not open.
    void PostCloseRequest(CloseRequest request);

  private:
    explicit ModalDialog(const std::shared_ptr<hostkit::dg::DialogState>& state);

    std::shared_ptr<hostkit::dg::DialogState> state;
};

}  // namespace DG
