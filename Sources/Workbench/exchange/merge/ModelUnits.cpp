#include "Workbench/exchange/merge/ModelUnits.hpp"

#include <algorithm>

#include "Workbench/step/Arguments.hpp"

namespace workbench {
namespace {

constexpr std::array<std::string_view, ModelUnits::count> unitTypes = {"LENGTHUNIT", "AREAUNIT", "VOLUMEUNIT",
                                                                       "PLANEANGLEUNIT"};

std::string_view TextOf(const step::Document& document, std::string_view reference) {
    const step::Record* record = document.Find(step::AsReference(reference).value_or(0));
    return record ? document.Text(*record) : std::string_view();
}

/// "1 METRE", "MILLI METRE", "0.0174532925 RADIAN".
std::string SignatureOf(const step::Document& document, const step::Record& record) {
    const std::string_view text = document.Text(record);
    if (document.TypeName(record) == "IFCSIUNIT") {
        const std::string_view prefix = step::AsEnum(step::Argument(text, 2));
        return std::string(prefix.empty() ? "1" : prefix) + " " +
               std::string(step::AsEnum(step::Argument(text, 3)));
    }
    const std::string_view measure = TextOf(document, step::Argument(text, 3));
    const std::string_view base = TextOf(document, step::Argument(measure, 1));
    return std::to_string(step::AsReal(step::Argument(measure, 0)).value_or(1)) + " " +
           std::string(step::AsEnum(step::Argument(base, 3)));
}

double RadiansIn(const step::Document& document, uint64_t unit) {
    const step::Record* record = document.Find(unit);
    if (!record || document.TypeName(*record) == "IFCSIUNIT") return 1;
    const std::string_view measure = TextOf(document, step::Argument(document.Text(*record), 3));
    const double factor = step::AsReal(step::Argument(measure, 0)).value_or(1);
    return factor > 0 ? factor : 1;
}

}  // namespace

ModelUnits UnitsOf(const Project& project) {
    const step::Document& document = project.Document();
    ModelUnits found;
    found.metres = project.LengthUnit();
    const auto projects = document.RecordsOf({"IFCPROJECT"});
    if (projects.empty()) return found;
    const std::string_view assignment = TextOf(document, step::Argument(document.Text(*projects.front()), 8));
    for (const uint64_t id : step::References(step::Argument(assignment, 0))) {
        const step::Record* record = document.Find(id);
        if (!record) continue;
        const std::string_view type = step::AsEnum(step::Argument(document.Text(*record), 1));
        const auto kind = static_cast<std::size_t>(std::ranges::find(unitTypes, type) - unitTypes.begin());
        if (kind == ModelUnits::count || found.units[kind].record != 0) continue;
        found.units[kind] = {id, SignatureOf(document, *record)};
    }
    found.radians = RadiansIn(document, found.units[ModelUnits::angle].record);
    return found;
}

std::optional<ModelUnits::Kind> KindOfMeasure(std::string_view value) {
    if (value.starts_with('(')) value.remove_prefix(1);  // of several the first tells
    const std::string_view measure = value.substr(0, value.find('('));
    if (measure == "IFCAREAMEASURE") return ModelUnits::area;
    if (measure == "IFCVOLUMEMEASURE") return ModelUnits::volume;
    if (measure.ends_with("PLANEANGLEMEASURE")) return ModelUnits::angle;
    if (measure == "IFCLENGTHMEASURE" || measure == "IFCPOSITIVELENGTHMEASURE" ||
        measure == "IFCNONNEGATIVELENGTHMEASURE")
        return ModelUnits::length;
    return std::nullopt;
}

}  // namespace workbench
