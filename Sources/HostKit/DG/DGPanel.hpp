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

class PanelOpenEvent {};

class PanelCloseEvent {};

// How the panel is to be left: accepting (Enter, a button such as OK) or cancelling (Esc, the close box).
class PanelCloseRequestEvent {
  public:
    explicit PanelCloseRequestEvent(bool accepting) : accepting(accepting) {}

    bool IsAccepted() const { return accepting; }
    bool IsCancelled() const { return !accepting; }

  private:
    bool accepting;
};

class PanelObserver {
  public:
    virtual ~PanelObserver() = default;

    // Just after a modal dialog begins and just after it ends.
    virtual void PanelOpened(const PanelOpenEvent& event);
    virtual void PanelClosed(const PanelCloseEvent& event);

    virtual void PanelResized(const PanelResizeEvent& event);

    // "accepted" starts true; false keeps the panel open.
    virtual void PanelCloseRequested(const PanelCloseRequestEvent& event, bool* accepted);
};

class CompoundItemObserver;

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

    // The observer hears of the events of all items, so far as it observes their kind too.
    void AttachToAllItems(CompoundItemObserver& observer);
    void DetachFromAllItems(CompoundItemObserver& observer);

    void EnableItems();
    void DisableItems();

    // Bracket changes of the items' places. They take effect one by one here.
    void BeginMoveResizeItems() {}
    void EndMoveResizeItems() {}

  protected:
    explicit Panel(std::shared_ptr<hostkit::dg::PanelState> state);

  private:
    Reference reference;
};

}  // namespace DG
