#pragma once

#include "Array.hpp"
#include "DGModule.hpp"
#include "UniString.hpp"

/// Asks for a name that is not in use yet; letter case and blanks tell names apart. Invoke shows it and
/// waits: true when a name was accepted.
class PropertyNameDialog : public DG::ModalDialog,
                           public DG::PanelObserver,
                           public DG::ButtonItemObserver,
                           public DG::CompoundItemObserver {
  public:
    explicit PropertyNameDialog(const GS::Array<GS::UniString>& namesInUse);
    ~PropertyNameDialog() override;
    PropertyNameDialog(const PropertyNameDialog&) = delete;
    PropertyNameDialog& operator=(const PropertyNameDialog&) = delete;

    /// The accepted name; empty before that.
    const GS::UniString& GetNewPropertyName() const { return newPropertyName; }

  protected:
    void ButtonClicked(const DG::ButtonClickEvent& event) override;
    void PanelCloseRequested(const DG::PanelCloseRequestEvent& event, bool* accepted) override;

  private:
    GS::Array<GS::UniString> namesInUse;
    GS::UniString newPropertyName;
    DG::Button okButton;
    DG::Button cancelButton;
    DG::TextEdit nameField;
};
