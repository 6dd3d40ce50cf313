#include "host/Elements.hpp"
#include "host/Environment.hpp"
#include "host/Ifc.hpp"
#include "palette/KestranePalette.hpp"
#include "script/JsonRequest.hpp"
#include "transfer/ExportIFC.hpp"

#include "File.hpp"
#include "RunnableTask.hpp"
#include "Thread.hpp"

#include <memory>
#include <optional>
#include <string>

namespace {

/// Where an export goes, under the name that the page gave.
std::optional<IO::Location> GetExportLocation(const GS::UniString& fileName) {
    std::optional<IO::Location> location = GetSpecialFolder(API_TemporaryFolderID);
    if (!location || location->AppendToLocal(IO::Name(fileName + ".ifc")) != NoError) return std::nullopt;
    return location;
}

}  // namespace

void KestranePalette::SetIfcFileName(const GS::UniString& name) {
    if (HasInstance()) GetInstance().ifcFileName = name;
}

void KestranePalette::ExportIFCModel(const GS::UniString& json) {
    GetInstance().ExportModel(json);
}

void KestranePalette::ExportModel(const GS::UniString& json) {
    const JsonRequest request(json);
    const std::optional<GS::UniString> token = request.GetString("token");
    const std::optional<GS::UniString> projectId = request.GetString("projectId");
    const std::optional<GS::UniString> folderId = request.GetString("folderId");
    const std::optional<GS::UniString> fileName = request.GetString("fileName");
    const std::optional<bool> onlyVisible = request.GetBool("onlyVisible");

    if (request.GetBool("useMapFile").value_or(false) && !mappingProperties.IsEmpty()) {
        CreatePreset();
        AddNewPropertyMappingForExport();
    }

    GS::UniString path;
    if (token && projectId && folderId && fileName && onlyVisible) {
        path = SaveIfcModel(*fileName, *onlyVisible);
    }
    if (path.IsEmpty()) {
        FailExportModel();
        return;
    }
    // The thread runs on when its object goes; nothing waits for an upload.
    GS::Thread thread(GS::RunnableTask(new ExportIFC(*token, *projectId, *folderId, path)), "exportModel");
    thread.Start();
}

GS::UniString KestranePalette::SaveIfcModel(const GS::UniString& fileName, bool onlyVisible) {
    const std::optional<IO::Location> location = GetExportLocation(fileName);
    if (!location || SaveIfcFile(*location, onlyVisible) != NoError) return GS::UniString();

    GS::UniString path;
    if (location->ToPath(&path) != NoError) return GS::UniString();
    return path;
}

GSErrCode KestranePalette::SaveIfcFile(const IO::Location& location, bool onlyVisible) {
    API_SavePars_Ifc ifcPars = {};
    const std::optional<GS::Array<API_Guid>> shown = ListElements(APIFilt_In3D);
    if (onlyVisible && shown) {
        ifcPars.elementsToIfcExport = API_FilteredElements;
        ifcPars.elementsSet = &*shown;
    } else {
        // Also when the host cannot say what it shows: rather too much than nothing.
        ifcPars.elementsToIfcExport = API_EntireProject;
    }

    IfcExportTranslators translators;
    const GSErrCode error = translators.Load();
    if (error != NoError) return error;
    ifcPars.translatorIdentifier = translators.First();
    return SaveProjectAsIfc(location, ifcPars);
}

GS::UniString KestranePalette::ExportIfcFile(const GS::UniString& fileName) {
    if (fileName.IsEmpty() || !HasInstance()) return GS::UniString();

    const std::optional<IO::Location> location = GetExportLocation(fileName);
    if (!location) return GS::UniString();
    // The outcome is what then lies there: after a failed save an earlier export of that name, if there is
    // one.
    SaveIfcFile(*location, false);
    return ReadIfcFile(*location);
}

GS::UniString KestranePalette::ReadIfcFile(const IO::Location& location) {
    IO::File file(location);
    if (file.Open(IO::File::ReadMode) != NoError) return GS::UniString();

    UInt64 length = 0;
    if (file.GetDataLength(&length) != NoError || length >= MaxUSize) return GS::UniString();
    std::string content(length, '\0');
    const auto size = static_cast<USize>(length);
    if (file.ReadBin(content.data(), size) != NoError) return GS::UniString();
    file.Close();
    return GS::UniString(content.data(), size, CC_Default);
}

void KestranePalette::CompleteExportModel(const GS::UniString& body) {
    // Without a lock, but as a whole: a page loaded anew may ask while a job answers.
    std::atomic_store(&exportedModelResult, std::make_shared<const GS::UniString>(body));
    browser.ExecuteJS("CompleteExportModel()");
}

void KestranePalette::FailExportModel() {
    browser.ExecuteJS("FailExportModel()");
}

GS::UniString KestranePalette::GetIfcDoucments() {
    if (!HasInstance()) return GS::UniString();
    const std::shared_ptr<const GS::UniString> result = std::atomic_load(&GetInstance().exportedModelResult);
    return result ? *result : GS::UniString();
}

GS::UniString KestranePalette::GetIfcDocumentFile() {
    return GetIfcDoucments();
}
