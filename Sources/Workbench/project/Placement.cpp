#include "Workbench/project/Placement.hpp"

#include <cmath>

#include "Workbench/mesher/Mesh.hpp"
#include "Workbench/step/Arguments.hpp"

namespace workbench {
namespace {

constexpr int mostLevels = 64;
constexpr double shortest = 1e-9;  // of a direction

const step::Record* Referenced(const step::Document& document, std::string_view text, size_t argument) {
    return document.Find(step::AsReference(step::Argument(text, argument)).value_or(0));
}

// The point or direction that an argument refers to; a flat one has no Z.
Vec3 Triple(const step::Document& document, std::string_view text, size_t argument, const Vec3& usual) {
    const step::Record* record = Referenced(document, text, argument);
    if (record == nullptr) return usual;
    const std::string_view list = step::Argument(document.Text(*record), 0);
    const auto number = [&](size_t n) { return step::AsReal(step::Argument(list, n)).value_or(0); };
    return {number(0), number(1), number(2)};
}

double Product(const Vec3& a, const Vec3& b) {
    return a.x * b.x + a.y * b.y + a.z * b.z;
}

// The part of a direction that is square to `axis`, of length 1; nothing when there is none.
std::optional<Vec3> SquareTo(const Vec3& axis, const Vec3& direction) {
    const Vec3 rest = direction - axis * Product(axis, direction);
    const double length = std::sqrt(Product(rest, rest));
    if (!(length > shortest)) return std::nullopt;
    return rest * (1 / length);
}

// From the space of an IfcAxis2Placement2D or 3D to that around it.
Vec3 Placed(const step::Document& document, const step::Record& axes, const Vec3& point) {
    const std::string_view text = document.Text(axes);
    const bool isFlat = document.TypeName(axes) == "IFCAXIS2PLACEMENT2D";
    const Vec3 up{0, 0, 1};
    const Vec3 z = SquareTo({}, isFlat ? up : Triple(document, text, 1, up)).value_or(up);
    auto x = SquareTo(z, Triple(document, text, isFlat ? 1 : 2, {1, 0, 0}));
    if (!x) x = SquareTo(z, {1, 0, 0});
    if (!x) x = SquareTo(z, {0, 1, 0});
    const Vec3 y{z.y * x->z - z.z * x->y, z.z * x->x - z.x * x->z, z.x * x->y - z.y * x->x};
    return Triple(document, text, 0, {}) + *x * point.x + y * point.y + z * point.z;
}

}  // namespace

std::optional<double> HeightOf(const step::Document& document, uint64_t placement) {
    Vec3 point;
    const step::Record* record = document.Find(placement);
    for (int level = 0; record != nullptr && level < mostLevels; ++level) {
        if (document.TypeName(*record) != "IFCLOCALPLACEMENT") return std::nullopt;
        const std::string_view text = document.Text(*record);
        const step::Record* axes = Referenced(document, text, 1);
        if (axes == nullptr) return std::nullopt;
        point = Placed(document, *axes, point);
        record = Referenced(document, text, 0);
        if (record == nullptr && std::isfinite(point.z)) return point.z;
    }
    return std::nullopt;
}

}  // namespace workbench
