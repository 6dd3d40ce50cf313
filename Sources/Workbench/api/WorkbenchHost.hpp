#pragma once

#include "HostKit/API/Host.hpp"

namespace workbench {

class Application;

/// The host's programming interface, answered from the open project.
class WorkbenchHost : public hostkit::Host {
  public:
    explicit WorkbenchHost(Application& application) : application(application) {}

    GSErrCode ApplicationInfo(API_ServerApplicationInfo& info) override;
    GSErrCode ProjectInfo(API_ProjectInfo& info) override;
    GSErrCode SpecialFolder(API_SpecFolderID id, IO::Location& location) override;

    GSErrCode Save(const API_FileSavePars& pars, const void* formatRecord) override;
    GSErrCode ExportTranslators(GS::Array<API_IFCTranslatorIdentifier>& translators) override;

    GSErrCode ElementList(const API_ElemType& type, API_ElemFilterFlags filter,
                          GS::Array<API_Guid>& elements) override;
    GSErrCode Element(API_Element& element) override;
    GSErrCode ElementHeader(API_Elem_Head& header) override;
    GSErrCode Element3DInfo(const API_Elem_Head& header, API_ElemInfo3D& info) override;

    void MenuItemFlagsChanged(short menuStrings, Int32 item, GSFlags flags) override;

  private:
    Application& application;
};

}  // namespace workbench
