#include "Workbench/project/Units.hpp"

#include <algorithm>
#include <array>
#include <optional>
#include <string_view>

#include "Workbench/step/Arguments.hpp"

namespace workbench {
namespace {

struct Prefix {
    std::string_view name;
    double factor;
};

constexpr auto prefixes = std::to_array<Prefix>({{"EXA", 1e18},
                                                 {"PETA", 1e15},
                                                 {"TERA", 1e12},
                                                 {"GIGA", 1e9},
                                                 {"MEGA", 1e6},
                                                 {"KILO", 1e3},
                                                 {"HECTO", 1e2},
                                                 {"DECA", 1e1},
                                                 {"DECI", 1e-1},
                                                 {"CENTI", 1e-2},
                                                 {"MILLI", 1e-3},
                                                 {"MICRO", 1e-6},
                                                 {"NANO", 1e-9},
                                                 {"PICO", 1e-12},
                                                 {"FEMTO", 1e-15},
                                                 {"ATTO", 1e-18}});

/// Metres in a unit; nothing when it is no length. `depth` bounds units that are defined by each other in a
/// ring.
std::optional<double> Metres(const step::Document& document, uint64_t unit, int depth = 0) {
    const step::Record* record = document.Find(unit);
    if (!record || depth > 4) return std::nullopt;
    const std::string_view text = document.Text(*record);
    if (step::AsEnum(step::Argument(text, 1)) != "LENGTHUNIT") return std::nullopt;
    const std::string_view type = document.TypeName(*record);
    if (type == "IFCSIUNIT") {
        const auto prefix = std::ranges::find(prefixes, step::AsEnum(step::Argument(text, 2)), &Prefix::name);
        return prefix == prefixes.end() ? 1.0 : prefix->factor;
    }
    if (!type.starts_with("IFCCONVERSIONBASEDUNIT")) return std::nullopt;
    const step::Record* measure = document.Find(step::AsReference(step::Argument(text, 3)).value_or(0));
    if (!measure) return std::nullopt;
    const auto value = step::AsReal(step::Argument(document.Text(*measure), 0));
    const auto base = step::AsReference(step::Argument(document.Text(*measure), 1));
    const auto baseMetres = base ? Metres(document, *base, depth + 1) : std::nullopt;
    if (!value || *value <= 0 || !baseMetres) return std::nullopt;
    return *value * *baseMetres;
}

}  // namespace

std::optional<double> MetresIn(const step::Document& document, uint64_t unit) {
    return Metres(document, unit);
}

double LengthUnitOf(const step::Document& document, uint64_t assignment) {
    const step::Record* record = document.Find(assignment);
    if (!record) return 1;
    for (const uint64_t unit : step::References(step::Argument(document.Text(*record), 0))) {
        if (const auto metres = Metres(document, unit)) return *metres;
    }
    return 1;
}

}  // namespace workbench
