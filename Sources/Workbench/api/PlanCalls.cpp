// The host's documents of what its windows show, and its add-on for DXF and DWG files.

#include <cmath>
#include <fstream>
#include <nlohmann/json.hpp>
#include <system_error>

#include "HostKit/API/CommandParameters.hpp"
#include "HostKit/API/FourCharacters.hpp"
#include "Workbench/api/Application.hpp"
#include "Workbench/api/WorkbenchHost.hpp"
#include "Workbench/navigator/PlanFiles.hpp"

namespace workbench {

namespace {

namespace fs = std::filesystem;

constexpr auto getDefaultConfiguration = static_cast<GSType>(hostkit::FourCharacters("GDCO"));
constexpr auto saveFile = static_cast<GSType>(hostkit::FourCharacters("SAV2"));
constexpr Int32 version = 1;

// All that a drawing can be written with.
const nlohmann::json dwgSettings = {{"format", "DWG"}, {"version", "AC1015"}, {"unit", "metre"}};

// The result of the writing.
template <class Write>
GSErrCode Tried(Write write) {
    try {
        write();
        return NoError;
    } catch (const PlanFileError&) {
        return APIERR_GENERAL;
    }
}

// The page's metres around the middle of the model, for all storeys the same; nothing for what is no size.
std::optional<QRectF> AreaOf(const API_SavePars_Pdf& page, const Application& application) {
    Box3 model;
    for (const Element& element : application.OpenProject().Elements())
        if (const auto bounds = application.BoundsOf(element)) model.Add(*bounds);
    if (!std::isfinite(page.sizeX) || !std::isfinite(page.sizeY) || page.sizeX <= 0 || page.sizeY <= 0 ||
        model.Empty())
        return std::nullopt;
    QRectF area({}, QSizeF(page.sizeX, page.sizeY) / 1000);
    area.moveCenter({model.Center().x, model.Center().y});
    return area;
}

const std::string* FindText(const hostkit::CommandParameters& parameters, const char* name) {
    const std::string* text = parameters.FindText(name);
    return text != nullptr && !text->empty() ? text : nullptr;
}

bool HasDwgSettings(const fs::path& file) {
    std::ifstream in(file);
    return in && nlohmann::json::parse(in, nullptr, false) == dwgSettings;
}

bool Put(const nlohmann::json& settings, const fs::path& file) {
    std::error_code ignored;
    fs::create_directories(file.parent_path(), ignored);
    std::ofstream out(file);
    return static_cast<bool>(out << settings.dump(4) << std::endl);
}

}  // namespace

GSErrCode WorkbenchHost::SaveAsPicture(const fs::path& file, API_FTypeID type,
                                       const API_SavePars_Picture& pars) {
    const PictureFormat format = type == APIFType_JPEGFile ? PictureFormat::jpeg : PictureFormat::png;
    const bool isPlan = application.Front().kind == FrontWindow::Kind::plan;
    if (isPlan && pars.view2D)
        return SavePlan([&](const Plan& plan) { WritePlanPicture(plan.drawing, plan.title, format, file); });
    return Tried([&] {
        WritePicture(isPlan ? application.PicturePlan(pars.keepSelectionHighlight)
                            : application.Picture3D(pars.keepSelectionHighlight),
                     format, file);
    });
}

GSErrCode WorkbenchHost::SaveAsPdf(const fs::path& file, const API_SavePars_Pdf& pars) {
    return SavePlan([&](const Plan& plan) {
        WritePlanPdf(plan.drawing, plan.title, file, {.area = AreaOf(pars, application)});
    });
}

// Not of a storey that is still being read: it would lack elements.
GSErrCode WorkbenchHost::SavePlan(const std::function<void(const Plan&)>& write) {
    const Project& project = application.OpenProject();
    const std::size_t storey = application.Front().storey;
    if (storey >= project.Storeys().size()) return APIERR_NOPLAN;
    if (application.IsShaping()) return APIERR_REFUSEDCMD;
    const std::string& name = project.Storeys()[storey].name;
    return Tried([&] {
        write(
            {DrawPlan(project, storey, application.ShapesOn(storey)), name, project.Name() + "  ·  " + name});
    });
}

GSErrCode WorkbenchHost::CallDxfDwg(const hostkit::CommandCall& call,
                                    const hostkit::CommandParameters& parameters, GSPtr result) {
    if (call.command != getDefaultConfiguration && call.command != saveFile)
        return APIERR_MODULCMDNOTSUPPORTED;
    if (call.version != version) return APIERR_MODULCMDVERSNOTSUPPORTED;
    if (call.command == saveFile) return SaveAsDwg(parameters);

    const std::string* mode = FindText(parameters, "Mode");
    auto* location = reinterpret_cast<IO::Location*>(result);
    if (mode == nullptr || *mode != "Default" || location == nullptr) return APIERR_BADPARS;
    const fs::path file = application.GetSettings().dataFolder / "DXF-DWG" / "Default.json";
    if (!HasDwgSettings(file) && !Put(dwgSettings, file)) return APIERR_GENERAL;
    *location = hostkit::ToLocation(file);
    return NoError;
}

GSErrCode WorkbenchHost::SaveAsDwg(const hostkit::CommandParameters& parameters) {
    const std::string* target = FindText(parameters, "FileName");
    const std::string* configuration = FindText(parameters, "ConfigFile");
    if (target == nullptr || configuration == nullptr) return APIERR_BADPARS;
    const IO::Location file = hostkit::LocationOfUrl(*target);
    const IO::Location settings = hostkit::LocationOfUrl(*configuration);
    if (file.IsEmpty() || !HasDwgSettings(hostkit::ToPath(settings))) return APIERR_BADPARS;
    Settled();
    return SavePlan(
        [&](const Plan& plan) { WritePlanDwg(plan.drawing, plan.storey, hostkit::ToPath(file)); });
}

}  // namespace workbench
