#include "dialogs/PublishReportDialog.hpp"

#include "APIEnvir.h"

#include "ACAPinc.h"

namespace {

constexpr short dialogResId = 32520;
constexpr short closeButtonItem = 1;
constexpr short headingItem = 2;
constexpr short listItem = 3;

constexpr short nameColumn = 1;

}  // namespace

PublishReportDialog::PublishReportDialog(const GS::Array<GS::UniString>& titles, bool german)
    : DG::ModalDialog(ACAPI_GetOwnResModule(), dialogResId, ACAPI_GetOwnResModule()),
      closeButton(GetReference(), closeButtonItem),
      heading(GetReference(), headingItem),
      list(GetReference(), listItem) {
    Attach(*this);
    AttachToAllItems(*this);
    heading.SetText(german ? "Die folgenden Artikel konnten nicht veroeffentlicht werden."
                           : "The following Items could not be published.");
    InitializeListView(titles);
}

PublishReportDialog::~PublishReportDialog() {
    DetachFromAllItems(*this);
    Detach(*this);
}

void PublishReportDialog::InitializeListView(const GS::Array<GS::UniString>& titles) {
    const short width = list.GetItemWidth();
    list.SetTabFieldCount(1);
    list.SetHeaderSynchronState(false);
    list.SetHeaderItemCount(1);
    list.SetHeaderItemSize(nameColumn, width);
    list.SetHeaderItemText(nameColumn, "Name");
    list.SetTabFieldProperties(nameColumn, 0, width, DG::ListBox::Left, DG::ListBox::NoTruncate, false, true);
    for (const GS::UniString& title : titles) {
        list.AppendItem();
        list.SetTabItemText(list.GetItemCount(), nameColumn, title);
    }
}

void PublishReportDialog::ButtonClicked(const DG::ButtonClickEvent& event) {
    if (event.GetSource() == &closeButton) PostCloseRequest(DG::ModalDialog::Accept);
}
