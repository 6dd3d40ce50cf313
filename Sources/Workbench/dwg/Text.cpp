#include "Workbench/dwg/Text.hpp"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <unordered_set>

namespace workbench::dwg {
namespace {

constexpr std::size_t mostNameBytes = 255;
constexpr std::size_t mostTextBytes = 2000;
constexpr std::string_view refusedInNames = "<>/\\\":;?*|,=`'";

// The character at the front, which is taken away; '?' for a byte that begins none.
char32_t TakeCharacter(std::string_view& utf8) {
    constexpr std::array<char32_t, 5> least{0, 0, 0x80, 0x800, 0x10000};
    const auto first = static_cast<unsigned char>(utf8[0]);
    const std::size_t count = first < 0x80 ? 1 : first < 0xC2 ? 0 : first < 0xE0 ? 2 : first < 0xF0 ? 3 : 4;
    char32_t character = count == 1 ? first : first & (0x7Fu >> count);
    bool isWhole = count > 0 && first < 0xF5 && utf8.size() >= count;
    for (std::size_t at = 1; isWhole && at < count; ++at) {
        const auto next = static_cast<unsigned char>(utf8[at]);
        isWhole = (next & 0xC0) == 0x80;
        character = character << 6 | (next & 0x3F);
    }
    isWhole = isWhole && character >= least[count] && character <= 0x10FFFF &&
              (character < 0xD800 || character > 0xDFFF);
    utf8.remove_prefix(isWhole ? count : 1);
    return isWhole ? character : U'?';
}

void AppendUnit(std::string& bytes, unsigned unit) {
    char text[8];
    std::snprintf(text, sizeof text, "\\U+%04X", unit & 0xFFFF);
    bytes += text;
}

void AppendEncoded(std::string& bytes, char32_t character) {
    if (character < 0x20 || character == 0x7F) {
        bytes.push_back(' ');
    } else if (character < 0x80 || (character >= 0xA0 && character <= 0xFF)) {
        bytes.push_back(static_cast<char>(character));
    } else if (character < 0x10000) {
        AppendUnit(bytes, character);
    } else {
        AppendUnit(bytes, 0xD800 + ((character - 0x10000) >> 10));
        AppendUnit(bytes, 0xDC00 + (character & 0x3FF));
    }
}

std::string EncodeName(std::string_view utf8, std::size_t mostBytes) {
    std::string name;
    while (!utf8.empty()) {
        const char32_t character = TakeCharacter(utf8);
        const bool isRefused =
            character < 0x80 && refusedInNames.find(static_cast<char>(character)) != std::string_view::npos;
        std::string next;
        AppendEncoded(next, isRefused ? U'_' : character);
        if (name.size() + next.size() > mostBytes) break;
        name += next;
    }
    const auto first = name.find_first_not_of(' ');
    if (first == std::string::npos) return "_";
    return name.substr(first, name.find_last_not_of(' ') - first + 1);
}

// Equal for names that a CAD program takes for one.
std::string Folded(std::string name) {
    for (char& byte : name) {
        const auto value = static_cast<unsigned char>(byte);
        if ((value >= 'a' && value <= 'z') || (value >= 0xE0 && value != 0xF7 && value != 0xFF))
            byte = static_cast<char>(value - 0x20);
    }
    return name;
}

using Rgb = std::array<double, 3>;

Rgb HueOf(double degrees) {
    const double sector = degrees / 60;
    const double rising = 1 - std::abs(std::fmod(sector, 2) - 1);
    if (sector < 1) return {1, rising, 0};
    if (sector < 2) return {rising, 1, 0};
    if (sector < 3) return {0, 1, rising};
    if (sector < 4) return {0, rising, 1};
    if (sector < 5) return {rising, 0, 1};
    return {1, 0, rising};
}

// The colour index: 24 hues in five shades, each also pale, after nine plain colours; greys at the end.
std::array<Rgb, 256> ColourTable() {
    constexpr Rgb plain[] = {{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0},          {0, 1, 1},
                             {0, 0, 1}, {1, 0, 1}, {1, 1, 1}, {.502, .502, .502}, {.753, .753, .753}};
    constexpr double shades[] = {255 / 255., 165 / 255., 127 / 255., 76 / 255., 38 / 255.};
    constexpr double greys[] = {51 / 255., 80 / 255., 105 / 255., 130 / 255., 190 / 255., 1};
    std::array<Rgb, 256> table{};
    std::ranges::copy(plain, table.begin());
    for (int index = 10; index < 250; ++index) {
        const int row = index % 10 / 2;
        const double shade = shades[row];
        const double floor = index % 2 == 1 ? shade / 2 : 0;
        Rgb colour = HueOf((index / 10 - 1) * 15.0);
        for (double& value : colour)
            value = floor + value * (shade - floor);
        table[static_cast<std::size_t>(index)] = colour;
    }
    for (std::size_t grey = 0; grey < 6; ++grey)
        table[250 + grey].fill(greys[grey]);
    return table;
}

}  // namespace

std::string EncodeText(std::string_view utf8) {
    std::string bytes;
    while (!utf8.empty()) {
        std::string next;
        AppendEncoded(next, TakeCharacter(utf8));
        if (bytes.size() + next.size() > mostTextBytes) break;
        bytes += next;
    }
    return bytes;
}

std::vector<std::string> LayerNames(const std::vector<Layer>& layers) {
    std::vector<std::string> names;
    std::unordered_set<std::string> taken{"0"};  // always there
    for (const Layer& layer : layers) {
        std::string name = EncodeName(layer.name, mostNameBytes);
        for (int number = 2; !taken.insert(Folded(name)).second; ++number) {
            const std::string suffix = "_" + std::to_string(number);
            name = EncodeName(layer.name, mostNameBytes - suffix.size()) + suffix;
        }
        names.push_back(std::move(name));
    }
    return names;
}

Colour NearestColour(double red, double green, double blue) {
    static const std::array<Rgb, 256> table = ColourTable();
    const auto distance = [&](std::size_t index) {
        const Rgb& colour = table[index];
        return std::hypot(red - colour[0], green - colour[1], blue - colour[2]);
    };
    std::size_t nearest = 1;
    for (std::size_t index = 2; index < table.size(); ++index)
        if (index != 7 && distance(index) < distance(nearest)) nearest = index;
    return static_cast<Colour>(nearest);
}

}  // namespace workbench::dwg
