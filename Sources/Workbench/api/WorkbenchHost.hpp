#pragma once

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "HostKit/API/Host.hpp"
#include "Workbench/api/ExportPresets.hpp"
#include "Workbench/exchange/Exchange.hpp"
#include "Workbench/view/PlanDrawing.hpp"

namespace workbench {

class Application;

/// The host's programming interface, answered from the open project.
class WorkbenchHost : public hostkit::Host {
  public:
    explicit WorkbenchHost(Application& application) : application(application) {}

    GSErrCode ApplicationInfo(API_ServerApplicationInfo& info) override;
    GSErrCode ProjectInfo(API_ProjectInfo& info) override;
    GSErrCode SpecialFolder(API_SpecFolderID id, IO::Location& location) override;

    GSErrCode PublisherSetCount(Int32& count) override;
    GSErrCode PublisherSet(Int32 index, API_NavigatorSet& set) override;
    GSErrCode PublisherItems(const API_Guid& parent, GS::Array<API_NavigatorItem>& items) override;
    GSErrCode Publish(const API_PublishPars& pars, const GS::Array<API_Guid>* items) override;

    GSErrCode Open(const API_FileOpenPars& pars) override;
    GSErrCode Save(const API_FileSavePars& pars, const void* formatRecord) override;
    GSErrCode CallCommand(const hostkit::CommandCall& call, const hostkit::CommandParameters& parameters,
                          GSPtr result) override;
    void BeginUndoable(const GS::UniString& name) override;
    void EndUndoable(bool succeeded) override;
    GSErrCode CreateElement(API_Element& element) override;
    GSErrCode ExportTranslators(GS::Array<API_IFCTranslatorIdentifier>& translators) override;

    GSErrCode ElementList(const API_ElemType& type, API_ElemFilterFlags filter,
                          GS::Array<API_Guid>& elements) override;
    GSErrCode Element(API_Element& element) override;
    GSErrCode ElementHeader(API_Elem_Head& header) override;
    GSErrCode Element3DInfo(const API_Elem_Head& header, API_ElemInfo3D& info) override;

    bool PassesFilter(const API_Guid& guid, API_ElemFilterFlags filter) override;
    GSErrCode ElementInfoString(const API_Guid& guid, GS::UniString& text) override;
    GSErrCode IfcIdentifier(const API_Guid& guid, API_Guid& own, API_Guid& external) override;
    GSErrCode ElementsByIfcIdentifier(const API_Guid* own, const API_Guid* external,
                                      GS::Array<API_Guid>& elements) override;

    GSErrCode Select(const GS::Array<API_Neig>& elements, bool add) override;
    GSErrCode DeselectAll() override;
    GSErrCode Selection(API_SelectionInfo& info, GS::Array<API_Neig>& elements) override;

    GSErrCode Projection3D(API_3DProjectionInfo& info) override;
    GSErrCode ChangeProjection3D(const API_3DProjectionInfo& info, bool onlyMode) override;
    GSErrCode Window3D(API_3DWindowInfo& info) override;
    GSErrCode ChangeWindow3D(const API_3DWindowInfo& info) override;
    GSErrCode CuttingPlanes(API_3DCutPlanesInfo& info) override;
    GSErrCode ChangeCuttingPlanes(const API_3DCutPlanesInfo& info) override;
    GSErrCode SurveyPointTransformation(API_Tranmat& matrix) override;
    GSErrCode ShowAllIn3D() override;
    GSErrCode ShowSelectionIn3D() override;
    GSErrCode ZoomToFit() override;
    GSErrCode ZoomToElements(const GS::Array<API_Guid>& elements) override;
    GSErrCode ChangeWindow(const API_WindowInfo& window) override;
    GSErrCode CurrentWindow(API_WindowInfo& window) override;

    void PageCallEnded() override { presets.Unapply(); }
    void MenuItemFlagsChanged(short menuStrings, Int32 item, GSFlags flags) override;

  private:
    Application& Settled() const;
    bool KnowsAny(const std::vector<API_Guid>& elements) const;
    GSErrCode SaveAsIfc(const std::filesystem::path& file, const API_SavePars_Ifc& pars);
    GSErrCode SaveAsPicture(const std::filesystem::path& file, API_FTypeID type,
                            const API_SavePars_Picture& pars);
    GSErrCode SaveAsPdf(const std::filesystem::path& file, const API_SavePars_Pdf& pars);
    GSErrCode SaveAsDwg(const hostkit::CommandParameters& parameters);
    struct Plan {
        PlanDrawing drawing;
        std::string storey;
        std::string title;
    };
    /// Writes the plan of the storey in front, or that was in front last; "write" throws PlanFileError.
    GSErrCode SavePlan(const std::function<void(const Plan&)>& write);

    GSErrCode CallDxfDwg(const hostkit::CommandCall& call, const hostkit::CommandParameters& parameters,
                         GSPtr result);
    /// With the preset that applies, which then does not apply any more.
    SaveResult WriteMapped(const std::filesystem::path& file, const GS::Array<API_Guid>* elements);

    Application& application;
    ExportPresets presets;
};

}  // namespace workbench
