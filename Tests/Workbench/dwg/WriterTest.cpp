#include "Workbench/dwg/Writer.hpp"

#include <gmock/gmock.h>

#include <cmath>
#include <map>
#include <numbers>
#include <random>

#include "Workbench/dwg/Entities.hpp"
#include "Workbench/dwg/Text.hpp"
#include "Workbench/plan/Programs.hpp"
#include "Workbench/step/StepTexts.hpp"

namespace workbench::dwg {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

std::string Bytes(const char* hex) {
    return QByteArray::fromHex(hex).toStdString();
}

std::uint32_t Little(const std::string& file, std::size_t at, int count) {
    std::uint32_t number = 0;
    for (int byte = count - 1; byte >= 0; --byte)
        number = number << 8 | static_cast<unsigned char>(file.at(at + static_cast<std::size_t>(byte)));
    return number;
}

std::vector<Point> Circle(Point middle, double radius, int count) {
    std::vector<Point> points;
    for (int at = 0; at < count; ++at) {
        const double angle = 2 * std::numbers::pi * at / count;
        points.push_back({middle.x + radius * std::cos(angle), middle.y + radius * std::sin(angle)});
    }
    return points;
}

TEST(DwgBits, AreThoseThatOtherProgramsWrite) {
    EXPECT_EQ(Crc("123456789"), 0x7E6C);
    EXPECT_EQ(Crc(std::string("\0\2", 2)), 0x01D0);
    EXPECT_EQ(LineObject({0x37, true, true}, 0x30, {0, {1, 2}, {3, 4}}).Bytes(),
              Bytes("310044D6C04000004DE53421D800000000000781FE00000000000010800000000000000081800000000000"
                    "08206608080A2600D421"));
    const Fill fill{0, {{{0, 0}, {4, 0}, {4, 3}}, {{2, 1}, {3, 1}, {3, 2}}}, 30};
    EXPECT_EQ(FillObject({0x31, true, true}, 0x30, fill).Bytes(),
              Bytes("9200539A010000004C6511E421DA94154D3D3125124090350300000000000000000000000000000000"
                    "00000000000010400000000000000000000000000000104000000000000008409035030000000000"
                    "000040000000000000F03F0000000000000840000000000000F03F00000000000008400000000000"
                    "000040A40501000000000000000000000000000000003040405130E9FB"));
    const std::string file = Write({});
    for (const char* object : {"0A004F100000000041AA4030E075", "0D004D120000000040E901403021117E4E",
                               "0E0051140000000042A901004030212745C6"})
        EXPECT_THAT(file, HasSubstr(Bytes(object))) << object;
}

// The objects of a file by handle, their checksums tested.
std::map<std::uint32_t, std::size_t> ObjectsOf(const std::string& file) {
    EXPECT_EQ(Little(file, 0x4F, 2), Crc(std::string_view(file).substr(0, 0x4F)));
    std::size_t page = Little(file, 0x15 + 4 + 2 * 9 + 1, 4);
    std::map<std::uint32_t, std::size_t> objects;
    for (;;) {
        const auto byte = [&](std::size_t at) { return static_cast<unsigned char>(file.at(at)); };
        const std::size_t size = byte(page) << 8 | byte(page + 1);
        EXPECT_EQ(byte(page + size) << 8 | byte(page + size + 1),
                  Crc(std::string_view(file).substr(page, size)));
        if (size <= 2 || objects.size() > 100000) return objects;
        std::uint32_t handle = 0;
        std::size_t address = 0;
        for (std::size_t at = page + 2; at < page + size;) {
            int shift = 0;
            for (bool more = true; more; shift += 7, ++at) {
                handle += static_cast<std::uint32_t>(byte(at) & 0x7F) << shift;
                more = (byte(at) & 0x80) != 0;
            }
            shift = 0;
            for (bool more = true; more; shift += 7, ++at) {
                more = (byte(at) & 0x80) != 0;
                address += static_cast<std::size_t>(byte(at) & (more ? 0x7F : 0x3F)) << shift;
            }
            const std::size_t bytes = Little(file, address, 2);  // below 32 KiB
            EXPECT_EQ(Little(file, address + 2 + bytes, 2),
                      Crc(std::string_view(file).substr(address, bytes + 2)))
                << handle;
            objects[handle] = bytes;
        }
        page += size + 2;
    }
}

TEST(DwgFile, HoldsTogetherAtAnySize) {
    const std::size_t fixed = ObjectsOf(Write({})).size();
    for (const std::size_t count : {1, 2, 5000}) {
        Drawing drawing{.layers = {{"A"}}};
        for (std::size_t at = 0; at < count; ++at)
            drawing.lines.push_back({0, {0, 0}, {1, static_cast<double>(at)}});
        EXPECT_EQ(ObjectsOf(Write(drawing)).size(), fixed + 1 + count);
    }
    Drawing large{.layers = {{"A"}}};
    large.polylines.push_back({0, Circle({0, 0}, 1, 20000), true});
    large.fills.push_back({0, {Circle({0, 0}, 1, 20000)}});
    for (const auto& [handle, size] : ObjectsOf(Write(large)))
        EXPECT_LT(size, 32768U) << "more than some readers take: " << handle;
}

TEST(DwgFile, IsReadByAnotherProgram) {
    const step::TemporaryFolder folder;
    Drawing drawing{.layers = {{"IfcWall", 1}, {"Wände/EG <1>", 3}, {"wände_eg _1_"}, {"unused"}}};
    const std::vector<Point> square{{3.5e6, 5.6e6}, {3500010.125, 5.6e6}, {3500010.125, 5600007.5}};
    drawing.polylines = {{0, square, true}, {0, {{0, 0}, {NAN, 1}}}, {0, {{1, 1}}}, {99, square}};
    drawing.polylines.push_back({1, Circle({0, 0}, 5, 2500), true});
    drawing.fills = {{0, {square}, 30}, {0, {{{0, 0}, {1, 0}}}}};
    drawing.lines = {{0, {1, 2}, {3, 4.5}}, {0, {1, INFINITY}, {3, 4}}};
    drawing.texts = {{2, {1, 1}, 0.5, "Höfe & Gärten"}};
    Save(drawing, folder / "a.dwg");
    const QString read = OutputOf("ogrinfo", {"-ro", "-al", "-q"}, folder / "a.dwg");
    const auto lines = [&read](const char* needle) {
        std::vector<std::string> found;
        for (const QString& line : read.split('\n'))
            if (line.contains(needle)) found.push_back(line.trimmed().toStdString());
        return found;
    };
    EXPECT_THAT(lines("Layer name: "),
                ElementsAre("Layer name: IfcWall", "Layer name: Wände_EG _1_", "Layer name: wände_eg _1__2"));
    EXPECT_THAT(lines("$INSUNITS"), ElementsAre("$INSUNITS=6")) << "metres";
    EXPECT_THAT(lines("Höfe"), ElementsAre(HasSubstr("Höfe & Gärten"), HasSubstr("Höfe & Gärten")));
    const std::vector<std::string> strings = lines("LINESTRING Z");
    ASSERT_EQ(strings.size(), 5U) << "two of the first layer, a circle in three pieces";
    const auto pointsOf = [&](std::size_t at) { return PointsOf(QString::fromStdString(strings[at])); };
    EXPECT_EQ(pointsOf(0), QPolygonF({{1, 2}, {3, 4.5}}));
    EXPECT_EQ(pointsOf(1), QPolygonF({{3.5e6, 5.6e6}, {3500010.125, 5.6e6}, {3500010.125, 5600007.5}}));
    const qsizetype points = pointsOf(2).size() + pointsOf(3).size() + pointsOf(4).size();
    EXPECT_EQ(points, 2500 + 3) << "closed, and two points in two pieces";

    EXPECT_THROW(Save(drawing, folder / "missing" / "a.dwg"), std::system_error);
    Save({}, folder / "empty.dwg");
    EXPECT_THAT(OutputOf("ogrinfo", {"-ro", "-al", "-q"}, folder / "empty.dwg").toStdString(),
                testing::Not(HasSubstr("Layer name")));
}

bool Holds(const std::vector<Fill>& fills, Point point) {
    bool holds = false;
    for (const Fill& fill : fills)
        for (const auto& ring : fill.rings)
            for (std::size_t at = 0; at < ring.size(); ++at) {
                const Point& a = ring[at];
                const Point& b = ring[(at + 1) % ring.size()];
                if ((a.y > point.y) == (b.y > point.y)) continue;
                if (a.x + (point.y - a.y) / (b.y - a.y) * (b.x - a.x) > point.x) holds = !holds;
            }
    return holds;
}

TEST(DwgFill, PiecesFillTheSameArea) {
    const auto most = [](const std::vector<Fill>& fills) {
        std::size_t points = 0;
        for (const Fill& fill : fills) {
            std::size_t sum = 0;
            for (const auto& ring : fill.rings)
                sum += ring.size();
            points = std::max(points, sum);
        }
        return points;
    };
    Fill fill{0, {Circle({0, 0}, 10, 3000), Circle({1, 0}, 6, 3000)}};
    for (int at = 0; at < 40; ++at)
        fill.rings.push_back(Circle({-9 + 0.45 * at, 5 - 0.25 * at}, 0.2, 50));
    const std::vector<Fill> pieces = Pieces(fill);
    EXPECT_GT(pieces.size(), 2U);
    std::mt19937 random(1);
    std::uniform_real_distribution<double> place(-11, 11);
    for (int at = 0; at < 3000; ++at) {
        const Point point{place(random), place(random)};
        EXPECT_EQ(Holds(pieces, point), Holds({fill}, point)) << point.x << ' ' << point.y;
    }
    EXPECT_LE(most(pieces), 1800U);
    // Slanting bars that any line cuts in two are shared out as they are, each with its hole.
    Fill bars;
    for (int at = 0; at < 500; ++at)
        for (const double inset : {0.0, 0.2})
            bars.rings.push_back({{at + 1.5 * inset, inset},
                                  {at + 0.9 - inset / 2, inset},
                                  {at + 600.9 - 1.5 * inset, 600 - inset},
                                  {at + 600 + inset / 2, 600 - inset}});
    const std::vector<Fill> shared = Pieces(bars);
    EXPECT_EQ(shared.size(), 3U);
    EXPECT_LE(most(shared), 1800U);
    for (const Fill& piece : shared)
        EXPECT_EQ(piece.rings.size() % 2, 0U);
    // What no line can halve stays whole.
    Fill zigzag{0, {{}}};
    for (int at = 0; at < 2000; ++at)
        zigzag.rings[0].insert(zigzag.rings[0].end(), {{at * 1e-3, 0}, {600 + at * 1e-3, 600}});
    EXPECT_EQ(Pieces(zigzag).size(), 1U);
}

TEST(DwgText, IsInTheFilesCodePage) {
    const std::pair<const char*, const char*> cases[] = {{"Größe 5 m²",
                                                          "Gr\xF6\xDF"
                                                          "e 5 m\xB2"},
                                                         {"€", "\\U+20AC"},
                                                         {"🏠", "\\U+D83C\\U+DFE0"},
                                                         {"a\nb", "a b"},
                                                         {"\xC3", "?"},
                                                         {"\xED\xA0\x80", "???"},
                                                         {"", ""},
                                                         {"\xE2\x82x", "??x"}};
    for (const auto& [utf8, encoded] : cases)
        EXPECT_EQ(EncodeText(utf8), encoded) << utf8;
    EXPECT_EQ(EncodeText(std::string(1995, 'x') + "€x"), std::string(1995, 'x')) << "cut between characters";
    EXPECT_THAT(LayerNames({{"0"}, {" "}, {"A"}, {"a"}, {"Ä"}, {"ä"}}),
                ElementsAre("0_2", "_", "A", "a_2", "\xC4", "\xE4_2"));
    EXPECT_EQ(LayerNames({{std::string(300, 'x')}})[0].size(), 255U);

    const std::tuple<double, double, double, int> colours[] = {
        {1, 0, 0, 1},    {0, 0, 1, 5},   {1, 1, 1, 255},  {.2, .2, .2, 250},
        {.5, .5, .5, 8}, {1, .5, 0, 30}, {1, .75, .5, 31}};
    for (const auto& [red, green, blue, index] : colours)
        EXPECT_EQ(int{NearestColour(red, green, blue)}, index);
}

}  // namespace
}  // namespace workbench::dwg
