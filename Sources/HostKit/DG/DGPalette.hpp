#pragma once

#include "DGPanel.hpp"
#include "Guid.hpp"

namespace DG {

class ModelessBase : public Panel {
  public:
    // Shows the panel in front of the other modeless ones.
    void Show();
    void Hide();
    bool IsVisible() const;

    // Observers hear of events only in between.
    void BeginEventProcessing();
    void EndEventProcessing();

  protected:
    using Panel::Panel;
};

// A dockable panel. It starts hidden, and a close request that its observers accept hides it.
class Palette : public ModelessBase {
  public:
    Palette(GSResModule dialogModule, GSResID dialog, GSResModule iconModule,
            const GS::Guid& guid = GS::NULLGuid);
};

}  // namespace DG
