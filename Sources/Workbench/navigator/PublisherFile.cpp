#include "Workbench/navigator/PublisherFile.hpp"

#include <algorithm>
#include <array>
#include <cmath>
#include <fstream>
#include <iterator>
#include <nlohmann/json.hpp>
#include <optional>
#include <span>
#include <system_error>

namespace workbench {

namespace {

using Json = nlohmann::json;
using Kind = PublisherItem::Kind;

constexpr int mostLevels = 64;

struct FormatName {
    std::string_view name;
    PublishFormat format;
};
constexpr FormatName formatNames[] = {{"pdf", PublishFormat::pdf},  {"dwg", PublishFormat::dwg},
                                      {"png", PublishFormat::png},  {"jpeg", PublishFormat::jpeg},
                                      {"jpg", PublishFormat::jpeg}, {"ifc", PublishFormat::ifc}};

// The first is the usual one.
std::span<const PublishFormat> FormatsOf(Kind kind) {
    static constexpr PublishFormat ofPlans[] = {PublishFormat::pdf, PublishFormat::dwg, PublishFormat::png,
                                                PublishFormat::jpeg};
    static constexpr PublishFormat ofModels[] = {PublishFormat::ifc};
    if (kind == Kind::model) return ofModels;
    return kind == Kind::floorPlan ? std::span(ofPlans) : std::span(ofPlans).subspan(2);
}

// Where in the file: "sets[0].items[2]".
std::string At(const std::string& list, std::size_t index) {
    return list + "[" + std::to_string(index) + "]";
}

class Reader {
  public:
    explicit Reader(Say say) : say(say) {}

    std::vector<PublisherSet> Sets(const std::string& text) const {
        const Json file = Parse(text);
        if (!file.is_object() || !file.contains("sets")) Fail("", R"("sets")");
        std::vector<PublisherSet> sets;
        for (const Json& entry : List(file, "sets", "sets")) {
            const std::string where = At("sets", sets.size());
            PublisherSet& set = sets.emplace_back();
            set.name = Name(entry, where);
            set.items = Items(entry, where, 1);
        }
        return sets;
    }

  private:
    Json Parse(const std::string& text) const {
        try {
            return Json::parse(text);
        } catch (const Json::parse_error& error) {
            const std::string before = text.substr(0, error.byte == 0 ? 0 : error.byte - 1);
            const auto line = std::ranges::count(before, '\n') + 1;
            const std::size_t column = before.size() - (before.rfind('\n') + 1) + 1;
            throw PublisherFileError(say("Line ", "Zeile ") + std::to_string(line) +
                                     say(", column ", ", Spalte ") + std::to_string(column) +
                                     say(": this is no valid JSON.", ": Das ist kein gültiges JSON."));
        } catch (const Json::exception&) {
            throw PublisherFileError(say("A number in it is too large.", "Eine Zahl darin ist zu groß."));
        }
    }

    [[noreturn]] void Fail(const std::string& where, const std::string& needed) const {
        throw PublisherFileError(
            (where.empty() ? "" : where + ": ") + needed +
            say(" is missing or not as it should be.", " fehlt oder ist nicht, wie es sein soll."));
    }

    const Json& List(const Json& owner, const char* key, const std::string& where) const {
        const Json& list = owner.at(key);
        if (!list.is_array()) Fail(where, std::string("\"") + key + "\"");
        return list;
    }

    std::string Name(const Json& entry, const std::string& where) const {
        if (!entry.is_object() || !entry.contains("name") || !entry.at("name").is_string())
            Fail(where, R"("name")");
        return entry.at("name").get<std::string>();
    }

    std::vector<PublisherItem> Items(const Json& owner, const std::string& where, int level) const {
        if (!owner.contains("items") || level > mostLevels) Fail(where, R"("items")");
        std::vector<PublisherItem> items;
        for (const Json& entry : List(owner, "items", where))
            items.push_back(Item(entry, At(where + ".items", items.size()), level));
        return items;
    }

    PublisherItem Item(const Json& entry, const std::string& where, int level) const {
        PublisherItem item;
        item.name = Name(entry, where);
        if (!entry.contains("show")) {
            item.children = Items(entry, where, level + 1);
            return item;
        }
        item.kind = KindOf(entry, where);
        ReadFormat(entry, where, item);
        ReadStorey(entry, where, item);
        ReadScale(entry, where, item);
        ReadCamera(entry, where, item);
        return item;
    }

    Kind KindOf(const Json& entry, const std::string& where) const {
        const Json& show = entry.at("show");
        if (show == "plan") return Kind::floorPlan;
        if (show == "3d") return Kind::view3D;
        if (show == "model") return Kind::model;
        Fail(where, R"("show")");
    }

    void ReadFormat(const Json& entry, const std::string& where, PublisherItem& item) const {
        const std::span<const PublishFormat> formats = FormatsOf(item.kind);
        item.format = formats.front();
        if (!entry.contains("format")) return;
        if (!entry.at("format").is_string()) Fail(where, R"("format")");
        const auto name = entry.at("format").get<std::string>();
        const auto* found = std::ranges::find(formatNames, name, &FormatName::name);
        if (found != std::end(formatNames) && std::ranges::count(formats, found->format) != 0) {
            item.format = found->format;
            return;
        }
        item.problem =
            say("There is no such thing in the format ", "Das gibt es nicht im Format ") + name + ".";
    }

    void ReadStorey(const Json& entry, const std::string& where, PublisherItem& item) const {
        if (!entry.contains("storey")) {
            if (item.kind == Kind::floorPlan) Fail(where, R"("storey")");
            return;
        }
        const Json& storey = entry.at("storey");
        if (storey.is_number_unsigned()) {
            item.storey = storey.get<std::size_t>();
        } else if (storey.is_string()) {
            item.storeyName = storey.get<std::string>();
        } else {
            Fail(where, R"("storey")");
        }
    }

    void ReadScale(const Json& entry, const std::string& where, PublisherItem& item) const {
        if (!entry.contains("scale")) return;
        const Json& scale = entry.at("scale");
        if (!scale.is_number() || scale.get<double>() < 1) Fail(where, R"("scale")");
        item.scale = scale.get<double>();
    }

    void ReadCamera(const Json& entry, const std::string& where, PublisherItem& item) const {
        if (!entry.contains("camera")) return;
        try {
            const auto point = [&](const char* key) {
                const auto numbers = entry.at(key).get<std::array<double, 3>>();
                return Vec3{numbers[0], numbers[1], numbers[2]};
            };
            Camera camera;
            camera.position = point("camera");
            camera.target = point("target");
            camera.viewCone = entry.value("viewCone", camera.viewCone);
            item.camera = camera;
        } catch (const Json::exception&) {
            Fail(where, R"("camera", "target")");
        }
        if (!IsUsable(*item.camera)) Fail(where, R"("camera", "target")");
    }

    Say say;
};

// Nothing when it cannot be read.
std::optional<std::string> TextOf(const std::filesystem::path& file) {
    try {
        if (!std::filesystem::is_regular_file(file)) return std::nullopt;
        std::ifstream in(file, std::ios::binary);
        std::string text{std::istreambuf_iterator<char>(in), {}};
        if (!in.good() && !in.eof()) return std::nullopt;
        return text;
    } catch (const std::system_error&) {  // the stream's buffer throws what the stream would not
        return std::nullopt;
    }
}

}  // namespace

std::filesystem::path PublisherFileOf(const Project& project) {
    return project.Location().parent_path() / (project.Name() + ".publisher.json");
}

std::vector<PublisherSet> ReadPublisherFile(const std::filesystem::path& file, Say say) {
    const std::optional<std::string> text = TextOf(file);
    if (!text) {
        throw PublisherFileError(
            say("It cannot be read: check whether you may, or move it away.",
                "Sie ist nicht lesbar: Prüfen Sie Ihre Rechte, oder verschieben Sie sie."));
    }
    return Reader(say).Sets(*text);
}

void FindStoreys(std::vector<PublisherItem>& items, const Project& project, Say say) {
    const auto& storeys = project.Storeys();
    for (PublisherItem& item : items) {
        FindStoreys(item.children, project, say);
        if (item.storeyName) {
            const auto found = std::ranges::find(storeys, *item.storeyName, &Storey::name);
            item.storey = static_cast<std::size_t>(found - storeys.begin());
        }
        if (!item.storey || *item.storey < storeys.size()) continue;
        item.problem = say("The model has no storey ", "Das Modell hat kein Geschoss ") +
                       (item.storeyName ? "\"" + *item.storeyName + "\"" : std::to_string(*item.storey)) +
                       ".";
    }
}

}  // namespace workbench
