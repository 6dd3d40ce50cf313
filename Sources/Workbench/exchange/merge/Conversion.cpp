#include "Workbench/exchange/merge/Conversion.hpp"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <string>
#include <vector>

#include "Workbench/exchange/merge/Measures.hpp"
#include "Workbench/project/Survey.hpp"
#include "Workbench/step/Arguments.hpp"
#include "Workbench/step/Text.hpp"

namespace workbench {
namespace {

constexpr double sameFactor = 1e-9;
constexpr double samePlace = 1e-6;  // metres
constexpr size_t placementOfProduct = 5;
constexpr int mostLevels = 64;

using step::EncodeReal;

std::optional<double> Factor(double from, double to) {
    const double factor = from / to;
    if (std::abs(factor - 1) <= sameFactor) return std::nullopt;
    return factor;
}

uint64_t ReferenceIn(const Draft& draft, uint64_t id, size_t attribute) {
    return step::AsReference(draft.Argument(id, attribute)).value_or(0);
}

/// All numbers of an argument, in lists and typed values too, multiplied.
std::string Multiplied(std::string_view argument, double factor) {
    std::string out;
    const char* end = argument.data() + argument.size();
    for (const char* p = argument.data(); p < end;) {
        const bool begins = p == argument.data() || p[-1] == '(' || p[-1] == ',' || p[-1] == ' ';
        double number = 0;
        const auto [behind, error] = std::from_chars(*p == '+' ? p + 1 : p, end, number);
        if (begins && error == std::errc() &&
            (behind == end || std::string_view(",) ").find(*behind) != std::string_view::npos)) {
            out += EncodeReal(number * factor);
            p = behind;
        } else {
            out += *p++;
        }
    }
    return out;
}

bool IsConic(std::string_view type) {
    return type == "IFCCIRCLE" || type == "IFCELLIPSE";
}

}  // namespace

Conversion::Conversion(const ModelUnits& from, const ModelUnits& to, const std::optional<API_Tranmat>& move)
    : from(from),
      to(to),
      scale(Factor(from.metres, to.metres)),
      turn(Factor(from.radians, to.radians)),
      move(move) {}

bool Conversion::Differs(ModelUnits::Kind kind) const {
    return from.units[kind].record != 0 && from.units[kind].signature != to.units[kind].signature;
}

void Conversion::Apply(Draft& draft, std::span<const uint64_t> products) {
    ConvertNumbers(draft);
    if (move) Move(draft, products);
}

// What comes is a copy of its own, so every number is converted once where it stands, shapes and placements
// alike: a scaled use of the old shape would be simpler, but readers do not agree on scaled booleans.
void Conversion::ConvertNumbers(Draft& draft) const {
    struct Work {
        std::vector<const PlainNumbers*> numbers;
        std::vector<const NamedValue*> values;
        bool isTrimmed = false;
        bool isTrimmedPlane = false;
    };
    std::vector<Work> works;
    for (const std::string& type : draft.Document().TypeNames()) {
        Work& work = works.emplace_back();
        for (const PlainNumbers& row : PlainNumbersTable())
            if (row.type == type && (row.kind == ModelUnits::angle ? turn : scale))
                work.numbers.push_back(&row);
        for (const NamedValue& row : NamedValueTable())
            if (row.type == type && (!row.kind || Differs(*row.kind))) work.values.push_back(&row);
        work.isTrimmed = turn && type == "IFCTRIMMEDCURVE";
        work.isTrimmedPlane = scale && type == "IFCRECTANGULARTRIMMEDSURFACE";
    }
    for (const step::Record* record : draft.Records()) {
        const Work& work = works[record->type];
        const uint64_t id = record->id;
        for (const PlainNumbers* row : work.numbers) {
            const double factor = row->kind == ModelUnits::angle  ? *turn
                                  : row->kind == ModelUnits::area ? *scale * *scale
                                                                  : *scale;
            for (size_t n = row->first; n <= row->last; ++n)
                draft.SetArgument(id, n, Multiplied(draft.Argument(id, n), factor));
        }
        for (const NamedValue* row : work.values)
            NameUnit(draft, id, row->kind ? row->kind : KindOfMeasure(draft.Argument(id, row->value)),
                     row->unit);
        if (work.isTrimmed) ConvertTrims(draft, id);
        if (work.isTrimmedPlane && draft.TypeOf(ReferenceIn(draft, id, 0)) == "IFCPLANE") {
            for (size_t n = 1; n <= 4; ++n)
                draft.SetArgument(id, n, Multiplied(draft.Argument(id, n), *scale));
        }
    }
}

/// Where conics are cut may be told by angles.
void Conversion::ConvertTrims(Draft& draft, uint64_t curve) const {
    if (!IsConic(draft.TypeOf(ReferenceIn(draft, curve, 0)))) return;
    for (const size_t trim : {1, 2})
        draft.SetArgument(curve, trim, Multiplied(draft.Argument(curve, trim), *turn));
}

/// Values keep their numbers and say what they are in.
void Conversion::NameUnit(Draft& draft, uint64_t id, std::optional<ModelUnits::Kind> kind,
                          size_t attribute) const {
    if (kind && Differs(*kind) && draft.Argument(id, attribute) == "$")
        draft.SetArgument(id, attribute, Reference(from.units[*kind].record));
}

// Only the outermost placements are put somewhere else.
void Conversion::Move(Draft& draft, std::span<const uint64_t> products) const {
    std::unordered_set<uint64_t> done;
    const std::string origin = Reference(MovedOrigin(draft));
    for (const uint64_t product : products) {
        uint64_t placement = ReferenceIn(draft, product, placementOfProduct);
        if (placement == 0) draft.SetArgument(product, placementOfProduct, origin);
        for (int level = 0; level < mostLevels && placement != 0 && done.insert(placement).second; ++level) {
            const uint64_t outer = ReferenceIn(draft, placement, 0);
            if (outer == 0 && draft.TypeOf(placement) == "IFCLOCALPLACEMENT")
                draft.SetArgument(placement, 0, origin);
            placement = outer;
        }
    }
}

uint64_t Conversion::MovedOrigin(Draft& draft) const {
    const auto& m = move->tmx;
    const auto triple = [](double x, double y, double z) {
        return "((" + EncodeReal(x) + "," + EncodeReal(y) + "," + EncodeReal(z) + "))";
    };
    const double unit = to.metres;
    const uint64_t point = draft.Add("IFCCARTESIANPOINT" + triple(m[3] / unit, m[7] / unit, m[11] / unit));
    const uint64_t up = draft.Add("IFCDIRECTION" + triple(0, 0, 1));
    const uint64_t right = draft.Add("IFCDIRECTION" + triple(m[0], m[4], 0));
    const uint64_t axes = draft.Add("IFCAXIS2PLACEMENT3D(" + Reference(point) + "," + Reference(up) + "," +
                                    Reference(right) + ")");
    return draft.Add("IFCLOCALPLACEMENT($," + Reference(axes) + ")");
}

std::optional<API_Tranmat> MoveBetween(const Project& from, const Project& to) {
    const auto source = MapPlaceOf(from);
    const auto target = MapPlaceOf(to);
    if (!source || !target) return std::nullopt;
    const bool namesBoth = !source->system.empty() && !target->system.empty();
    if (namesBoth && source->system != target->system) return std::nullopt;
    const auto& a = source->toMap.tmx;
    const auto& b = target->toMap.tmx;
    // Both turn about Z: the inverse of the target's turn is its transpose.
    const double cosine = b[0] * a[0] + b[4] * a[4];
    const double sine = b[0] * a[4] - b[4] * a[0];
    const double dx = (a[3] - b[3]) / target->scale, dy = (a[7] - b[7]) / target->scale;
    const API_Tranmat move = {{cosine, -sine, 0, b[0] * dx + b[4] * dy,  //
                               sine, cosine, 0, b[1] * dx + b[5] * dy,   //
                               0, 0, 1, a[11] - b[11]}};
    const bool same = std::abs(sine) < sameFactor && cosine > 0 && std::abs(move.tmx[3]) < samePlace &&
                      std::abs(move.tmx[7]) < samePlace && std::abs(move.tmx[11]) < samePlace;
    if (same) return std::nullopt;
    return move;
}

}  // namespace workbench
