#include "dialogs/PropertyNameDialog.hpp"

#include "APIEnvir.h"

#include "ACAPinc.h"

namespace {

constexpr short dialogResId = 32510;
constexpr short okButtonItem = 1;
constexpr short cancelButtonItem = 2;
constexpr short nameFieldItem = 3;

}  // namespace

PropertyNameDialog::PropertyNameDialog(const GS::Array<GS::UniString>& namesInUse)
    : DG::ModalDialog(ACAPI_GetOwnResModule(), dialogResId, ACAPI_GetOwnResModule()),
      namesInUse(namesInUse),
      okButton(GetReference(), okButtonItem),
      cancelButton(GetReference(), cancelButtonItem),
      nameField(GetReference(), nameFieldItem) {
    Attach(*this);
    AttachToAllItems(*this);
}

PropertyNameDialog::~PropertyNameDialog() {
    DetachFromAllItems(*this);
    Detach(*this);
}

void PropertyNameDialog::ButtonClicked(const DG::ButtonClickEvent& event) {
    if (event.GetSource() == &cancelButton) {
        PostCloseRequest(DG::ModalDialog::Cancel);
    } else if (event.GetSource() == &okButton) {
        if (namesInUse.Contains(nameField.GetText()))
            DG::InformationAlert("The property name exists.", GS::UniString(), "Ok");
        else
            PostCloseRequest(DG::ModalDialog::Accept);
    }
}

void PropertyNameDialog::PanelCloseRequested(const DG::PanelCloseRequestEvent& event, bool*) {
    if (event.IsAccepted()) newPropertyName = nameField.GetText();
}
