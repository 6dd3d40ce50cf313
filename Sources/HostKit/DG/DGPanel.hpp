#pragma once

#include <memory>

#include "Definitions.hpp"

namespace hostkit::dg {
class PanelState;
}

namespace DG {

// Names a panel to the items that are made on it.
class Reference {
  public:
    explicit Reference(std::shared_ptr<hostkit::dg::PanelState> panel) : panel(std::move(panel)) {}

    const std::shared_ptr<hostkit::dg::PanelState>& Panel() const { return panel; }

  private:
    std::shared_ptr<hostkit::dg::PanelState> panel;
};

class PanelResizeEvent {
  public:
    PanelResizeEvent(short horizontalChange, short verticalChange)
        : horizontalChange(horizontalChange), verticalChange(verticalChange) {}

    // Pixels; negative when the panel became smaller.
    short GetHorizontalChange() const { return horizontalChange; }
    short GetVerticalChange() const { return verticalChange; }

  private:
    short horizontalChange;
    short verticalChange;
};

class PanelCloseRequestEvent {};

class PanelObserver {
  public:
    virtual ~PanelObserver() = default;

    virtual void PanelResized(const PanelResizeEvent& event);

    // "accepted" starts true; false keeps the panel open.
    virtual void PanelCloseRequested(const PanelCloseRequestEvent& event, bool* accepted);
};

// A dialog's face: built from the dialog resource, with events for the observers. Main thread only. A panel
// without a resource, or one whose host session has ended, answers but shows nothing.
class Panel {
  public:
    virtual ~Panel();
    Panel(const Panel&) = delete;
    Panel& operator=(const Panel&) = delete;

    const Reference& GetReference() const { return reference; }

    void Attach(PanelObserver& observer);
    void Detach(PanelObserver& observer);

    void EnableItems();
    void DisableItems();

    // Bracket changes of the items' places. They take effect one by one here.
    void BeginMoveResizeItems() {}
    void EndMoveResizeItems() {}

  protected:
    Panel(GSResModule module, GSResID dialog);

  private:
    Reference reference;
};

}  // namespace DG
