#pragma once

#include "Array.hpp"
#include "DGModule.hpp"
#include "UniString.hpp"

/// Lists the items that the host could not publish, by their titles. Invoke shows it and waits.
class PublishReportDialog : public DG::ModalDialog,
                            public DG::PanelObserver,
                            public DG::ButtonItemObserver,
                            public DG::CompoundItemObserver {
  public:
    PublishReportDialog(const GS::Array<GS::UniString>& titles, bool german);
    ~PublishReportDialog() override;
    PublishReportDialog(const PublishReportDialog&) = delete;
    PublishReportDialog& operator=(const PublishReportDialog&) = delete;

  protected:
    void ButtonClicked(const DG::ButtonClickEvent& event) override;

  private:
    void InitializeListView(const GS::Array<GS::UniString>& titles);

    DG::Button closeButton;
    DG::LeftText heading;
    DG::SingleSelListBox list;
};
