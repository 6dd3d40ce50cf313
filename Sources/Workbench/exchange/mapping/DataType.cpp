#include "Workbench/exchange/mapping/DataType.hpp"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

#include "Workbench/exchange/mapping/Words.hpp"
#include "Workbench/step/Arguments.hpp"
#include "Workbench/step/Lexer.hpp"
#include "Workbench/step/Text.hpp"

namespace workbench {
namespace {

constexpr size_t mostCharacters = 255;   // of an IfcLabel or IfcIdentifier
constexpr double mostExact = 1LL << 53;  // whole numbers up to here are exact

// The measures of IfcValue without "IFC" and "MEASURE" around them.
constexpr std::string_view measures =
    " ABSORBEDDOSE ACCELERATION AMOUNTOFSUBSTANCE ANGULARVELOCITY AREA CONTEXTDEPENDENT CURVATURE "
    "DOSEEQUIVALENT DYNAMICVISCOSITY ELECTRICCAPACITANCE ELECTRICCHARGE ELECTRICCONDUCTANCE ELECTRICCURRENT "
    "ELECTRICRESISTANCE ELECTRICVOLTAGE ENERGY FORCE FREQUENCY HEATFLUXDENSITY HEATINGVALUE ILLUMINANCE "
    "INDUCTANCE IONCONCENTRATION ISOTHERMALMOISTURECAPACITY KINEMATICVISCOSITY LENGTH LINEARFORCE "
    "LINEARMOMENT LINEARSTIFFNESS LINEARVELOCITY LUMINOUSFLUX LUMINOUSINTENSITY "
    "LUMINOUSINTENSITYDISTRIBUTION MAGNETICFLUX MAGNETICFLUXDENSITY MASS MASSDENSITY MASSFLOWRATE "
    "MASSPERLENGTH MODULUSOFELASTICITY MODULUSOFLINEARSUBGRADEREACTION "
    "MODULUSOFROTATIONALSUBGRADEREACTION MODULUSOFSUBGRADEREACTION MOISTUREDIFFUSIVITY MOLECULARWEIGHT "
    "MOMENTOFINERTIA MONETARY NORMALISEDRATIO NUMERIC PH PLANARFORCE PLANEANGLE POSITIVELENGTH "
    "POSITIVEPLANEANGLE POSITIVERATIO POWER PRESSURE RADIOACTIVITY RATIO ROTATIONALFREQUENCY ROTATIONALMASS "
    "ROTATIONALSTIFFNESS SECTIONALAREAINTEGRAL SECTIONMODULUS SHEARMODULUS SOLIDANGLE SOUNDPOWER "
    "SOUNDPRESSURE SPECIFICHEATCAPACITY TEMPERATUREGRADIENT THERMALADMITTANCE THERMALCONDUCTIVITY "
    "THERMALEXPANSIONCOEFFICIENT THERMALRESISTANCE THERMALTRANSMITTANCE THERMODYNAMICTEMPERATURE TIME TORQUE "
    "VAPORPERMEABILITY VOLUME VOLUMETRICFLOWRATE WARPINGCONSTANT WARPINGMOMENT ";
constexpr std::string_view newerMeasures =
    " AREADENSITY NONNEGATIVELENGTH SOUNDPOWERLEVEL SOUNDPRESSURELEVEL TEMPERATURERATEOFCHANGE ";

bool Contains(std::string_view list, std::string_view word) {
    return word.find(' ') == std::string_view::npos &&
           list.find(" " + std::string(word) + " ") != std::string_view::npos;
}

bool IsMeasure(std::string_view name, bool isOld) {
    constexpr std::string_view prefix = "IFC", suffix = "MEASURE";
    if (name == "IFCREAL" || name == "IFCPARAMETERVALUE") return true;
    if (!name.starts_with(prefix) || !name.ends_with(suffix) || name.size() < 11) return false;
    const auto word = name.substr(prefix.size(), name.size() - prefix.size() - suffix.size());
    return Contains(measures, word) || (!isOld && Contains(newerMeasures, word));
}

/// The dates and times of the type begin like this, 9 standing for any digit.
std::string_view BeginningOf(std::string_view name) {
    if (name == "IFCDATE") return "9999-99-99";
    if (name == "IFCDATETIME") return "9999-99-99T99:99";
    if (name == "IFCTIME") return "99:99";
    return name == "IFCDURATION" ? "P" : "";
}

bool BeginsLike(std::string_view text, std::string_view beginning) {
    return text.size() >= beginning.size() &&
           std::equal(beginning.begin(), beginning.end(), text.begin(),
                      [](char like, char c) { return like == '9' ? step::IsDigit(c) : like == c; });
}

/// The word or number itself, also of a text.
std::string PlainWordOf(std::string_view plain) {
    return WordOf(step::AsText(plain).value_or(std::string(plain)));
}

/// 'T', 'F', 'U' or nothing.
char TruthOf(std::string_view plain) {
    constexpr std::array<std::pair<std::string_view, char>, 15> words = {{{".T.", 'T'},
                                                                          {".F.", 'F'},
                                                                          {".U.", 'U'},
                                                                          {"TRUE", 'T'},
                                                                          {"FALSE", 'F'},
                                                                          {"UNKNOWN", 'U'},
                                                                          {"YES", 'T'},
                                                                          {"NO", 'F'},
                                                                          {"WAHR", 'T'},
                                                                          {"FALSCH", 'F'},
                                                                          {"UNBEKANNT", 'U'},
                                                                          {"JA", 'T'},
                                                                          {"NEIN", 'F'},
                                                                          {"1", 'T'},
                                                                          {"0", 'F'}}};
    const std::string word = PlainWordOf(plain);
    const auto found = std::ranges::find(words, word, &std::pair<std::string_view, char>::first);
    return found == words.end() ? '\0' : found->second;
}

std::string_view PlainOf(std::string_view value) {
    return !value.empty() && step::IsWordCharacter(value[0]) && value.back() == ')' ? step::Argument(value, 0)
                                                                                    : value;
}

bool HasType(std::string_view value, std::string_view name) {
    const std::string_view type = value.substr(0, std::min(value.find('('), value.size()));
    return std::ranges::equal(Trimmed(type), name, {}, step::ToUpper);
}

}  // namespace

DataType::DataType(std::string_view text, std::string_view schema) : name(WordOf(text)) {
    const bool isOld = schema.starts_with("IFC2");
    if (name.empty()) {
        family = Family::unchanged;
    } else if (name == "IFCBOOLEAN" || name == "IFCLOGICAL") {
        family = Family::truth;
    } else if (Contains(" IFCLABEL IFCTEXT IFCIDENTIFIER IFCDESCRIPTIVEMEASURE ", name) ||
               (!isOld && !BeginningOf(name).empty())) {
        family = Family::text;
    } else if (Contains(" IFCINTEGER IFCCOUNTMEASURE IFCINTEGERCOUNTRATEMEASURE IFCTIMESTAMP ", name) ||
               (!isOld && name == "IFCPOSITIVEINTEGER")) {
        family = Family::integer;
    } else if (IsMeasure(name, isOld)) {
        family = Family::real;
    }
}

std::optional<std::string> DataType::Convert(std::string_view value) const {
    if (family == Family::unknown || step::IsUnset(value)) return std::nullopt;
    if (family == Family::unchanged || HasType(value, name)) return std::string(value);
    const std::string_view plain = PlainOf(value);
    const auto converted = family == Family::text    ? Text(plain)
                           : family == Family::truth ? Truth(plain)
                                                     : Number(plain);
    if (!converted) return std::nullopt;
    return name + '(' + *converted + ')';
}

std::optional<std::string> DataType::Text(std::string_view plain) const {
    const auto text = step::AsText(plain);
    const std::string_view beginning = BeginningOf(name);
    if (!beginning.empty() && !(text && BeginsLike(*text, beginning))) return std::nullopt;
    if (text) {
        const auto characters = std::ranges::count_if(
            *text, [](char c) { return (static_cast<unsigned char>(c) & 0xC0) != 0x80; });
        const bool isShort = name == "IFCLABEL" || name == "IFCIDENTIFIER";
        if (isShort && static_cast<size_t>(characters) > mostCharacters) return std::nullopt;
        return std::string(plain);
    }
    switch (plain.starts_with('.') ? TruthOf(plain) : '\0') {
        case 'T':
            return "'True'";
        case 'F':
            return "'False'";
        case 'U':
            return "'Unknown'";
        default:
            break;
    }
    const auto number = step::AsReal(plain);
    if (!number || !std::isfinite(*number)) return std::nullopt;
    if (std::ranges::all_of(plain, step::IsDigit)) return '\'' + std::string(plain) + '\'';
    char digits[32];
    return '\'' + std::string(digits, std::to_chars(digits, std::end(digits), *number).ptr) + '\'';
}

std::optional<std::string> DataType::Truth(std::string_view plain) const {
    const char truth = TruthOf(plain);
    if (truth == '\0' || (truth == 'U' && name == "IFCBOOLEAN")) return std::nullopt;
    return std::string{'.', truth, '.'};
}

std::optional<std::string> DataType::Number(std::string_view plain) const {
    std::string word = PlainWordOf(plain);
    if (plain == ".T." || plain == ".F.") word = plain == ".T." ? "1" : "0";
    const auto number = step::AsReal(word);
    const bool isPositive = name.starts_with("IFCPOSITIVE");
    if (!number || !std::isfinite(*number) || (isPositive && *number <= 0) ||
        (name == "IFCNONNEGATIVELENGTHMEASURE" && *number < 0) ||
        (name == "IFCNORMALISEDRATIOMEASURE" && (*number < 0 || *number > 1))) {
        return std::nullopt;
    }
    if (family == Family::real) return step::EncodeReal(*number);
    if (std::abs(*number) > mostExact || std::trunc(*number) != *number) return std::nullopt;
    return std::to_string(static_cast<long long>(*number));
}

bool IsNumber(std::string_view value) {
    const auto number = step::AsReal(value);
    return number && std::isfinite(*number);
}

}  // namespace workbench
