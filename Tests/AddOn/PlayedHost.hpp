#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <nlohmann/json.hpp>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "AddOn/AddOnTest.hpp"
#include "HostKit/API/Session.hpp"

namespace tests {

/// A host whose answers a test sets beforehand, and which notes what is asked of it: names such as
/// "ChangeProjection3D", in order.
class PlayedHost : public hostkit::Host {
  public:
    struct PlayedElement {
        API_Guid guid = APINULLGuid;
        API_Guid external = APINULLGuid;
        std::string idText = {};
        bool shown = true;
        bool readable = true;
        std::optional<API_Box3D> bounds = {};
    };

    struct PlayedSet {
        std::string name;
        API_Guid guid;
        API_Guid root;
    };
    struct PlayedItem {
        std::string name;
        API_Guid guid;
    };

    std::vector<PlayedSet> publisherSets;
    std::map<API_Guid, std::vector<PlayedItem>> publisherItems;   // by their parent
    std::map<API_Guid, std::vector<std::string>> publisherFiles;  // that publishing an item writes
    std::vector<std::filesystem::path> published;                 // folders, also when it failed

    std::vector<PlayedElement> elements;
    std::map<std::string, std::vector<PlayedElement>> models;  // what can be opened, by file name
    std::function<void()> whileOpening = [] {};
    std::vector<std::filesystem::path> opened;  // or tried to
    std::vector<UInt32> created;                // as Guid() takes them
    std::vector<API_Guid> selection;
    std::vector<API_Guid> zoomed;
    API_3DProjectionInfo projection = {};
    double viewConeAfterSwitch = 60;
    API_3DWindowInfo window = {};
    bool planesOn = false;
    std::vector<API_3DCutShapeType> planes;
    API_Tranmat survey = {{1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0}};
    API_WindowTypeID front = APIWind_3DModelID;
    std::string language = "INT";
    std::filesystem::path temporaryFolder;
    IO::Location dwgConfiguration = IO::Location("/Configurations/Plan ä.xml");
    std::vector<std::string> saved;     // what was asked for, in words; it then holds this text
    std::vector<std::string> commands;  // with their parameters
    std::string mappings;               // of the last command that had some
    std::vector<std::string> calls;

    GSErrCode ApplicationInfo(API_ServerApplicationInfo& info) override;
    GSErrCode SpecialFolder(API_SpecFolderID id, IO::Location& location) override;
    GSErrCode Save(const API_FileSavePars& pars, const void* formatRecord) override;
    GSErrCode CallCommand(const hostkit::CommandCall& call, const hostkit::CommandParameters& parameters,
                          GSPtr result) override;
    GSErrCode Open(const API_FileOpenPars& pars) override;
    void BeginUndoable(const GS::UniString& name) override;
    void EndUndoable(bool succeeded) override;
    GSErrCode CreateElement(API_Element& element) override;
    GSErrCode PublisherSetCount(Int32& count) override;
    GSErrCode PublisherSet(Int32 index, API_NavigatorSet& set) override;
    GSErrCode PublisherItems(const API_Guid& parent, GS::Array<API_NavigatorItem>& list) override;
    GSErrCode Publish(const API_PublishPars& pars, const GS::Array<API_Guid>* items) override;
    GSErrCode ElementList(const API_ElemType& type, API_ElemFilterFlags filter,
                          GS::Array<API_Guid>& list) override;
    GSErrCode Element(API_Element& element) override;
    GSErrCode ElementHeader(API_Elem_Head& header) override;
    GSErrCode Element3DInfo(const API_Elem_Head& header, API_ElemInfo3D& info) override;
    bool PassesFilter(const API_Guid& guid, API_ElemFilterFlags filter) override;
    GSErrCode ElementInfoString(const API_Guid& guid, GS::UniString& text) override;
    GSErrCode IfcIdentifier(const API_Guid& guid, API_Guid& own, API_Guid& external) override;
    GSErrCode ElementsByIfcIdentifier(const API_Guid* own, const API_Guid* external,
                                      GS::Array<API_Guid>& list) override;
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
    GSErrCode ZoomToElements(const GS::Array<API_Guid>& list) override;
    GSErrCode ChangeWindow(const API_WindowInfo& info) override;
    GSErrCode CurrentWindow(API_WindowInfo& info) override;
    GSErrCode Select(const GS::Array<API_Neig>& list, bool add) override;
    GSErrCode DeselectAll() override;
    GSErrCode Selection(API_SelectionInfo& info, GS::Array<API_Neig>& list) override;

  private:
    PlayedElement* Find(const API_Guid& guid);
};

/// The add-on with its palette open in a played host of two elements: one of its own and one from a file.
class PlayedHostTest : public testing::Test {
  protected:
    PlayedHostTest();
    ~PlayedHostTest() override;

    GS::Ref<DG::JSBase> Call(const std::string& function, const GS::Ref<DG::JSBase>& argument = nullptr) {
        return driver.Call(function, argument);
    }
    std::size_t CountScripts(const std::string& script) const;
    bool CallForBool(const std::string& function, const nlohmann::json& argument);
    /// The text that the function returns; of what it throws instead, the message.
    std::string CallForText(const std::string& function, const std::string& argument = "");
    /// The parsed texts of an array of component records.
    std::vector<nlohmann::json> CallForComponents(const std::string& function,
                                                  const nlohmann::json& argument = nullptr);
    hostkit::Faults& Faults() { return session->GetFaults(); }
    /// The host ends, and with it all that is the add-on's on the main thread.
    void EndHost();

    TemporaryFolder folder;
    hostkit::dg::RecordingDriver driver;
    PlayedHost host;
    std::optional<hostkit::Session> session;
};

/// A GUID with this number in its first digits, and its text in IFC files.
API_Guid Guid(UInt32 number);
std::string IfcGuid(UInt32 number);

/// The request once for each of its members at the place (a JSON pointer) without it and once with it of
/// another kind, and the message that the add-on rejects it with: none when the member may be missing.
std::vector<std::pair<std::string, std::string>> SpoilEach(const nlohmann::ordered_json& request,
                                                           const std::string& place = "",
                                                           const std::set<std::string>& mayBeMissing = {});

/// As the page's value arrives in the host.
GS::Ref<DG::JSBase> ToScript(const nlohmann::json& value);

}  // namespace tests
