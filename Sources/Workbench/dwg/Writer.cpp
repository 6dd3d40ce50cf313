#include "Workbench/dwg/Writer.hpp"

#include <algorithm>
#include <array>
#include <cmath>
#include <functional>
#include <stdexcept>
#include <string_view>
#include <utility>
#include <vector>

#include "Workbench/dwg/Header.hpp"
#include "Workbench/dwg/Tables.hpp"
#include "Workbench/step/OutputFile.hpp"

namespace workbench::dwg {
namespace {

using namespace std::string_view_literals;

constexpr std::size_t auxiliaryStart = 0x61;
constexpr std::size_t auxiliarySize = 0x7B;
constexpr std::size_t previewStart = 0xDC;
constexpr std::uint16_t version = 23;  // AC1015
constexpr std::uint16_t maintenance = 0x0F;
constexpr std::uint16_t codePage = 30;  // Windows 1252
constexpr std::size_t mostFileBytes = 0x7FFFFFFF;

// Where a section of the file lies.
struct Locator {
    std::size_t address = 0;
    std::size_t size = 0;
};
using Locators = std::array<Locator, 6>;  // header, classes, object map, none, template, auxiliary header

template <typename... Numbers>
void AppendShorts(std::string& bytes, Numbers... numbers) {
    (AppendLittle(bytes, static_cast<std::uint16_t>(numbers)), ...);
}
template <typename... Numbers>
void AppendLongs(std::string& bytes, Numbers... numbers) {
    (AppendLittle(bytes, static_cast<std::uint32_t>(numbers)), ...);
}

std::string FileHeader(const Locators& locators) {
    std::string bytes("AC1015\0\0\0\0\0\0\x0B\x0F\x01"sv);
    bytes.resize(0x0D);
    bytes[0x0B] = 0x0F;
    bytes[0x0C] = 0x01;
    AppendLongs(bytes, previewStart);
    bytes += "\x17\x0F"sv;
    AppendShorts(bytes, codePage);
    AppendLongs(bytes, locators.size());
    for (std::size_t at = 0; at < locators.size(); ++at) {
        bytes.push_back(static_cast<char>(at));
        AppendLongs(bytes, locators[at].address, locators[at].size);
    }
    AppendShorts(bytes, Crc(bytes));
    return bytes += "\x95\xA0\x4E\x28\x99\x82\x1A\xE5\x5E\x41\xE0\x5F\x9D\x3A\x4D\x00"sv;
}

std::string AuxiliaryHeader(const Moment& made, std::uint32_t freeHandle) {
    std::string bytes("\xFF\x77\x01"sv);
    AppendShorts(bytes, version, maintenance);
    AppendLongs(bytes, 1, 0xFFFFFFFF);
    AppendShorts(bytes, 1, 0);
    AppendLongs(bytes, 0);
    AppendShorts(bytes, version, maintenance, version, maintenance, 5, 0x893, 5, 0x893, 0, 1);
    AppendLongs(bytes, 0, 0, 0, 0, 0);
    AppendLongs(bytes, made.day, made.millisecond, made.day, made.millisecond, freeHandle, 0);
    AppendShorts(bytes, 0, 1);
    AppendLongs(bytes, 0, 0, 0, 1, 0, 0, 0, 0);
    return bytes;
}

std::string Preview() {
    return std::string(
        "\x1F\x25\x6D\x07\xD4\x36\x28\x28\x9D\x57\xCA\x3F\x9D\x44\x10\x2B"
        "\x01\0\0\0\0"
        "\xE0\xDA\x92\xF8\x2B\xC9\xD7\xD7\x62\xA8\x35\xC0\x62\xBB\xEF\xD4"sv);
}

// For a program to find its way when the first header is broken.
std::string SecondHeader(const Locators& locators, std::size_t address, std::uint32_t freeHandle) {
    constexpr std::uint32_t handles[] = {
        blockControl,   layerControl,        styleControl,       linetypeControl,       viewControl,
        ucsControl,     viewportControl,     applicationControl, dimensionStyleControl, viewportEntityControl,
        rootDictionary, multilineDictionary, groupDictionary};
    constexpr std::string_view fill = "\0\0\0\0\0\0\0\0"sv;
    BitStream data;
    data.RL(0);
    data.BL(static_cast<std::uint32_t>(address));
    for (const char byte : "AC1015\0\0\0\0\0"sv)
        data.RC(static_cast<unsigned char>(byte));
    data.RC(maintenance);
    data.RC(1);
    data.BS(0x0F17);
    data.RS(codePage);
    data.BS(6);
    for (std::size_t at = 0; at < locators.size(); ++at) {
        const Locator& locator = at == 4 ? Locator() : locators[at];
        data.RC(static_cast<unsigned>(at));
        data.BL(static_cast<std::uint32_t>(locator.address));
        data.BL(static_cast<std::uint32_t>(locator.size));
    }
    data.BS(14);
    const auto append = [&data](unsigned index, std::uint32_t handle) {
        const unsigned count = handle < 0x100 ? 1 : handle < 0x10000 ? 2 : handle < 0x1000000 ? 3 : 4;
        data.RC(count);
        data.RC(index);
        for (unsigned at = count; at > 0; --at)
            data.RC(handle >> (8 * (at - 1)) & 0xFF);
    };
    append(0, freeHandle);
    for (unsigned at = 0; at < std::size(handles); ++at)
        append(at + 1, handles[at]);
    data.ReplaceRL(0, static_cast<std::uint32_t>(data.Bytes().size() + 2 + fill.size()));

    std::string bytes("\xD4\x7B\x21\xCE\x28\x93\x9F\xBF\x53\x24\x40\x09\x12\x3C\xAA\x01"sv);
    bytes += data.Bytes();
    AppendShorts(bytes, Crc(data.Bytes()));
    bytes += fill;
    return bytes += "\x2B\x84\xDE\x31\xD7\x6C\x60\x40\xAC\xDB\xBF\xF6\xED\xC3\x55\xFE"sv;
}

bool IsNumber(const Point& point) {
    return std::isfinite(point.x) && std::isfinite(point.y);
}

// The drawing as its file can hold it.
Drawing Prepared(const Drawing& drawing) {
    Drawing prepared;
    prepared.layers = drawing.layers;
    const auto isKnown = [&](const auto& item) { return item.layer < drawing.layers.size(); };
    for (const Fill& fill : drawing.fills) {
        Fill kept{fill.layer, {}, fill.colour};
        for (const auto& ring : fill.rings)
            if (ring.size() >= 3 && std::ranges::all_of(ring, IsNumber)) kept.rings.push_back(ring);
        if (kept.rings.empty() || !isKnown(fill)) continue;
        std::ranges::move(Pieces(kept), std::back_inserter(prepared.fills));
    }
    for (const Polyline& polyline : drawing.polylines)
        if (polyline.points.size() >= 2 && std::ranges::all_of(polyline.points, IsNumber) &&
            isKnown(polyline))
            std::ranges::move(Pieces(polyline), std::back_inserter(prepared.polylines));
    std::ranges::copy_if(drawing.lines, std::back_inserter(prepared.lines), [&](const Line& line) {
        return IsNumber(line.from) && IsNumber(line.to) && isKnown(line);
    });
    std::ranges::copy_if(drawing.texts, std::back_inserter(prepared.texts), [&](const Text& text) {
        return IsNumber(text.start) && std::isfinite(text.height) && isKnown(text);
    });
    return prepared;
}

// The entities in the order in which they are drawn.
void AddEntities(ObjectList& objects, const Drawing& drawing, const EntityRange& range) {
    Place place;
    std::uint32_t added = 0;
    const auto addAll = [&](const auto& items, const auto& objectOf) {
        for (const auto& item : items) {
            place = {range.first + added, added == 0, added + 1 == range.count};
            objects.Add(place.handle,
                        objectOf(place, firstFree + static_cast<std::uint32_t>(item.layer), item));
            ++added;
        }
    };
    addAll(drawing.fills, FillObject);
    addAll(drawing.lines, LineObject);
    addAll(drawing.polylines, PolylineObject);
    addAll(drawing.texts, TextObject);
}

Moment MomentOf(std::chrono::system_clock::time_point time) {
    using namespace std::chrono;
    constexpr std::uint32_t dayOf1970 = 2440588;
    const auto day = floor<days>(time);
    return {static_cast<std::uint32_t>(day.time_since_epoch().count()) + dayOf1970,
            static_cast<std::uint32_t>(floor<milliseconds>(time - day).count())};
}

}  // namespace

std::string Write(const Drawing& given, std::chrono::system_clock::time_point time) {
    const Drawing drawing = Prepared(given);
    const Extents extents = ExtentsOf(drawing);
    const Moment made = MomentOf(time);
    const EntityRange entities{firstFree + static_cast<std::uint32_t>(drawing.layers.size()),
                               static_cast<std::uint32_t>(drawing.fills.size() + drawing.lines.size() +
                                                          drawing.polylines.size() + drawing.texts.size())};
    const std::uint32_t freeHandle = entities.first + entities.count;
    const auto fingerprint =
        std::hash<std::string_view>()("plan") ^
        static_cast<std::uint64_t>(time.time_since_epoch().count()) * 0x9E3779B97F4A7C15u;

    Locators locators;
    locators[5] = {auxiliaryStart, auxiliarySize};
    const std::string preview = Preview();
    const std::string header = HeaderSection(extents, freeHandle, made, fingerprint);
    locators[0] = {previewStart + preview.size(), header.size()};
    const std::string classes = ClassesSection();
    locators[1] = {locators[0].address + header.size(), classes.size()};

    std::string mark;
    AppendLongs(mark, 0x0DCA);
    const std::size_t objectsStart = locators[1].address + classes.size() + mark.size();
    ObjectList objects(objectsStart);
    AddTables(objects, drawing.layers, entities, extents);
    AddEntities(objects, drawing, entities);
    const std::string map = objects.Map();
    locators[2] = {objectsStart + objects.Bytes().size(), map.size()};
    const std::size_t secondStart = locators[2].address + map.size();
    if (secondStart > mostFileBytes) throw std::length_error("The drawing is too large for a DWG file.");

    // Its length depends on the addresses in it, of which the template's is left out.
    const std::string second = SecondHeader(locators, secondStart, freeHandle);
    std::string measurement;
    AppendShorts(measurement, 0, 1);  // metric
    locators[4] = {secondStart + second.size(), measurement.size()};

    std::string file = FileHeader(locators) + AuxiliaryHeader(made, freeHandle) + preview;
    for (const std::string& section : {header, classes, mark, objects.Bytes(), map, second, measurement})
        file += section;
    return file;
}

void Save(const Drawing& drawing, const std::filesystem::path& file) {
    const std::string bytes = Write(drawing);
    step::OutputFile output(file);
    output.Write(bytes);
    output.Commit();
}

}  // namespace workbench::dwg
