#include "Workbench/project/Survey.hpp"

#include <algorithm>
#include <array>
#include <cctype>
#include <cmath>
#include <optional>
#include <string_view>

#include "Workbench/project/Units.hpp"
#include "Workbench/step/Arguments.hpp"

namespace workbench {
namespace {

constexpr double sameUnit = 0.05;  // a scale at most so far from 1 is a map projection's distortion
constexpr double leastDirection = 1e-9;

/// The six numbers in the order of IfcMapConversion's attributes.
struct MapConversion {
    enum : size_t { eastings, northings, height, abscissa, ordinate, scale, count };
    std::array<std::optional<double>, count> numbers;
    std::array<std::optional<double>, 3> units;  // of the first three, metres
    std::string system;

    bool HasPlace() const { return numbers[eastings] || numbers[northings]; }
};

constexpr std::array<std::string_view, MapConversion::count> propertyNames = {
    "eastings", "northings", "orthogonalheight", "xaxisabscissa", "xaxisordinate", "scale"};

std::string Lower(std::string text) {
    std::ranges::transform(text, text.begin(), [](unsigned char c) { return std::tolower(c); });
    return text;
}

std::optional<double> Number(std::string_view argument) {
    const auto number = step::AsReal(argument);
    return number && std::isfinite(*number) ? number : std::nullopt;
}

std::optional<double> UnitIn(const step::Document& document, std::string_view argument) {
    const auto unit = step::AsReference(argument);
    return unit ? MetresIn(document, *unit) : std::nullopt;
}

/// From a record of type IfcMapConversion: SourceCRS, TargetCRS, then the numbers.
MapConversion FromRecord(const step::Document& document, std::string_view text) {
    MapConversion conversion;
    for (size_t at = 0; at < MapConversion::count; ++at)
        conversion.numbers[at] = Number(step::Argument(text, 2 + at));
    const step::Record* target = document.Find(step::AsReference(step::Argument(text, 1)).value_or(0));
    if (!target) return conversion;
    const std::string_view system = document.Text(*target);
    conversion.system = step::AsText(step::Argument(system, 0)).value_or("");
    if (document.TypeName(*target) == "IFCPROJECTEDCRS")
        conversion.units.fill(UnitIn(document, step::Argument(system, 6)));
    return conversion;
}

/// From a record of type IfcPropertySet.
MapConversion FromProperties(const step::Document& document, std::string_view text) {
    MapConversion conversion;
    for (const uint64_t id : step::References(step::Argument(text, 4))) {
        const step::Record* property = document.Find(id);
        if (!property || document.TypeName(*property) != "IFCPROPERTYSINGLEVALUE") continue;
        const std::string_view single = document.Text(*property);
        const std::string name = Lower(step::AsText(step::Argument(single, 0)).value_or(""));
        const auto found = std::ranges::find(propertyNames, name);
        if (found == propertyNames.end()) continue;
        const auto at = static_cast<size_t>(found - propertyNames.begin());
        conversion.numbers[at] = Number(step::Argument(single, 2));
        if (at < conversion.units.size()) conversion.units[at] = UnitIn(document, step::Argument(single, 3));
    }
    return conversion;
}

std::optional<MapConversion> ConversionOf(const step::Document& document) {
    for (const step::Record* record : document.RecordsOf({"IFCMAPCONVERSION", "IFCMAPCONVERSIONSCALED"})) {
        const MapConversion conversion = FromRecord(document, document.Text(*record));
        if (conversion.HasPlace()) return conversion;
    }
    for (const step::Record* record : document.RecordsOf({"IFCPROPERTYSET"})) {
        const std::string_view text = document.Text(*record);
        if (Lower(step::AsText(step::Argument(text, 2)).value_or("")) != "epset_mapconversion") continue;
        const MapConversion conversion = FromProperties(document, text);
        if (conversion.HasPlace()) return conversion;
    }
    return std::nullopt;
}

}  // namespace

API_Tranmat SurveyTransformation(const Project& project) {
    const auto place = MapPlaceOf(project);
    return place ? place->toMap : API_Tranmat{{1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0}};
}

std::optional<MapPlace> MapPlaceOf(const Project& project) {
    const auto conversion = ConversionOf(project.Document());
    if (!conversion) return std::nullopt;
    const auto number = [&](size_t at) { return conversion->numbers[at].value_or(0); };

    const double scale = conversion->numbers[MapConversion::scale].value_or(1);
    const bool isDistortion = scale > 0 && std::abs(scale - 1) <= sameUnit;
    const double otherUnit = scale > 0 && !isDistortion ? 1 : project.LengthUnit();
    const auto metres = [&](size_t at) { return number(at) * conversion->units[at].value_or(otherUnit); };

    double cosine = 1, sine = 0;
    const double length = std::hypot(number(MapConversion::abscissa), number(MapConversion::ordinate));
    if (length > leastDirection && std::isfinite(length)) {
        cosine = number(MapConversion::abscissa) / length;
        sine = number(MapConversion::ordinate) / length;
    }
    return MapPlace{.toMap = {{cosine, -sine, 0, metres(MapConversion::eastings),  //
                               sine, cosine, 0, metres(MapConversion::northings),  //
                               0, 0, 1, metres(MapConversion::height)}},
                    .scale = isDistortion ? scale : 1,
                    .system = conversion->system};
}

}  // namespace workbench
