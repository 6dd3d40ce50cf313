#include "Workbench/mesher/Frames.hpp"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <optional>
#include <string_view>

namespace workbench {
namespace {

static_assert(sizeof(float) == 4 && sizeof(double) == 8);

constexpr std::string_view magic = "MSH1";
constexpr std::size_t headSize = 12;
constexpr std::size_t largestPayload = std::size_t{1} << 30;

enum Kind : std::uint32_t { elementKind = 1, failedKind, progressKind, refusedKind, doneKind };

// Reads values one after the other; once the bytes have run out every value is zero and Good is false.
class Cursor {
  public:
    explicit Cursor(std::string_view bytes) : rest(bytes) {}

    template <class Value>
    Value Take() {
        Value value{};
        if (Require(sizeof value)) std::memcpy(&value, Advance(sizeof value), sizeof value);
        return value;
    }

    template <class Value>
    std::vector<Value> TakeMany(std::size_t count) {
        if (!Require(count * sizeof(Value))) return {};
        std::vector<Value> values(count);
        if (count > 0) std::memcpy(values.data(), Advance(count * sizeof(Value)), count * sizeof(Value));
        return values;
    }

    std::string TakeRest() { return std::string(Advance(rest.size()), rest.size()); }

    bool Good() const { return good; }
    bool AtEnd() const { return good && rest.empty(); }

  private:
    bool Require(std::size_t count) { return good = good && count <= rest.size(); }
    const char* Advance(std::size_t count) {
        const char* bytes = rest.data();
        rest.remove_prefix(count);
        return bytes;
    }

    std::string_view rest;
    bool good = true;
};

bool Usable(const MeshPart& part) {
    const std::size_t vertices = part.positions.size() / 3;
    return part.indices.size() % 3 == 0 &&
           std::all_of(part.indices.begin(), part.indices.end(),
                       [=](auto index) { return index < vertices; }) &&
           std::all_of(part.positions.begin(), part.positions.end(),
                       [](float x) { return std::isfinite(x); });
}

bool Usable(const ElementMesh& mesh) {
    return std::isfinite(mesh.origin.x) && std::isfinite(mesh.origin.y) && std::isfinite(mesh.origin.z) &&
           std::all_of(mesh.parts.begin(), mesh.parts.end(),
                       [](const MeshPart& part) { return Usable(part); });
}

Box3 BoundsOf(const ElementMesh& mesh) {
    Box3 bounds;
    for (const MeshPart& part : mesh.parts) {
        const std::vector<float>& p = part.positions;
        for (std::size_t at = 0; at + 2 < p.size(); at += 3)
            bounds.Add(mesh.origin + Vec3{p[at], p[at + 1], p[at + 2]});
    }
    return bounds;
}

std::optional<MeshMessage> ReadElement(Cursor& cursor) {
    auto mesh = std::make_shared<ElementMesh>();
    mesh->record = cursor.Take<std::uint64_t>();
    mesh->origin.x = cursor.Take<double>();
    mesh->origin.y = cursor.Take<double>();
    mesh->origin.z = cursor.Take<double>();
    const auto parts = cursor.Take<std::uint32_t>();
    for (std::uint32_t at = 0; at < parts && cursor.Good(); ++at) {
        MeshPart part;
        part.colour = cursor.Take<std::array<float, 4>>();
        const std::size_t vertices = cursor.Take<std::uint32_t>();
        const std::size_t indices = cursor.Take<std::uint32_t>();
        part.positions = cursor.TakeMany<float>(3 * vertices);
        part.indices = cursor.TakeMany<std::uint32_t>(indices);
        mesh->parts.push_back(std::move(part));
    }
    if (!cursor.AtEnd()) return std::nullopt;
    if (!Usable(*mesh)) return MeshFailed{mesh->record, "its triangles are damaged"};
    mesh->bounds = BoundsOf(*mesh);
    if (mesh->bounds.Empty()) return MeshFailed{mesh->record, "its triangles are damaged"};
    return ElementMeshPtr(std::move(mesh));
}

std::optional<MeshMessage> ReadMessage(std::uint32_t kind, std::string_view payload) {
    Cursor cursor(payload);
    switch (kind) {
        case elementKind:
            return ReadElement(cursor);
        case failedKind: {
            const auto record = cursor.Take<std::uint64_t>();
            if (!cursor.Good()) return std::nullopt;
            return MeshFailed{record, cursor.TakeRest()};
        }
        case progressKind: {
            const auto done = cursor.Take<std::uint32_t>();
            const auto total = cursor.Take<std::uint32_t>();
            if (!cursor.AtEnd()) return std::nullopt;
            return MeshProgress{done, total};
        }
        case refusedKind:
            return MeshRefused{cursor.TakeRest()};
        case doneKind:
            if (!cursor.AtEnd()) return std::nullopt;
            return MeshDone{};
        default:
            return std::nullopt;
    }
}

}  // namespace

bool FrameReader::Read(const std::function<void(MeshMessage)>& take) {
    std::string_view rest(buffer.data(), buffer.size());
    bool good = true;
    while (good && rest.size() >= headSize) {
        Cursor head(rest.substr(magic.size(), headSize - magic.size()));
        const auto kind = head.Take<std::uint32_t>();
        const std::size_t size = head.Take<std::uint32_t>();
        good = rest.starts_with(magic) && size <= largestPayload;
        if (!good || rest.size() < headSize + size) break;
        auto message = ReadMessage(kind, rest.substr(headSize, size));
        good = message.has_value();
        if (!good) break;
        take(std::move(*message));
        rest.remove_prefix(headSize + size);
    }
    buffer.erase(buffer.begin(), buffer.end() - static_cast<std::ptrdiff_t>(rest.size()));
    return good;
}

}  // namespace workbench
