#include "Workbench/dwg/Header.hpp"

#include <cstdio>
#include <string_view>

#include "Workbench/dwg/Tables.hpp"

namespace workbench::dwg {
namespace {

using namespace std::string_view_literals;

constexpr int metresUnit = 6;
constexpr double noExtent = 1e20;

std::string Section(std::string_view begin, const std::string& data, std::string_view end) {
    std::string body;
    AppendLittle(body, static_cast<std::uint32_t>(data.size()));
    body += data;
    AppendLittle(body, Crc(body));
    return std::string(begin) + body + std::string(end);
}

std::string GuidText(std::uint64_t number) {
    char text[40];
    std::snprintf(text, sizeof text, "{%08X-%04X-4%03X-8%03X-%012llX}", static_cast<unsigned>(number >> 32),
                  static_cast<unsigned>(number >> 16 & 0xFFFF), static_cast<unsigned>(number & 0xFFF),
                  static_cast<unsigned>(number >> 52),
                  static_cast<unsigned long long>(number & 0xFFFFFFFFFFFF));
    return text;
}

void AppendMoment(BitStream& data, const Moment& moment) {
    data.BL(moment.day);
    data.BL(moment.millisecond);
}

void AppendModes(BitStream& data) {
    data.Bs(1, 1, 0, 0, 1, 1, 0, 1, 0);
    data.Bs(1, 0, 0, 0, 0, 1, 1, 0, 1, 0, 0);
    data.BSs(1, 3020, 2, 4, 0, 0);
    data.BSs(1, 0);
    data.BSs(0, 0, 0, 0, 0);
    data.BSs(8, 6, 6, 6, 6, 6, 6, 3, 70, 0, 64, 4, 0, 50);
    data.BDs(1, .2, .05, .1, 0, 0, 0, 0, 0);
    data.BDs(0, 0, 0, 0, 0);
    data.BDs(0, 0, 0, 0);
    data.BDs(.5, 1, 1);
}

void AppendSpace(BitStream& data, const Point& min, const Point& max, double level) {
    data.BD3(0, 0, 0);
    data.BD3(min.x, min.y, level);
    data.BD3(max.x, max.y, -level);
    data.RD2(0, 0);
    data.RD2(12, 9);
    data.BD(0);
    data.BD3(0, 0, 0);
    data.BD3(1, 0, 0);
    data.BD3(0, 1, 0);
    data.H(Link::hardPointer, 0);
    data.H(Link::hardPointer, 0);
    data.BS(0);
    data.H(Link::hardPointer, 0);
    for (int at = 0; at < 6; ++at)
        data.BD3(0, 0, 0);
}

void AppendSpaces(BitStream& data, const Extents& extents) {
    AppendSpace(data, {}, {}, 0);
    if (extents.IsEmpty())
        AppendSpace(data, {noExtent, noExtent}, {-noExtent, -noExtent}, noExtent);
    else
        AppendSpace(data, extents.min, extents.max, 0);
}

void AppendLinks(BitStream& data, Link link, std::initializer_list<std::uint32_t> handles) {
    for (const std::uint32_t handle : handles)
        data.H(link, handle);
}

}  // namespace

std::string HeaderSection(const Extents& extents, std::uint32_t freeHandle, const Moment& made,
                          std::uint64_t fingerprint) {
    BitStream data;
    data.BDs(412148564080.0, 1, 1, 1);
    data.T("m");
    data.T("");
    data.T("");
    data.T("");
    data.BL(0);
    data.BL(0);
    data.H(Link::hardPointer, 0);
    AppendModes(data);
    data.T(".");
    AppendMoment(data, made);
    AppendMoment(data, made);
    AppendMoment(data, {});
    AppendMoment(data, {});
    data.BS(256);
    data.H(Link::self, freeHandle);
    AppendLinks(data, Link::hardPointer, {layerZero, textStyle, byLayer, dimensionStyle, multilineStyle});
    data.BD(0);
    AppendSpaces(data, extents);
    data.T("");
    data.T("");
    AppendDimensionSettings(data);
    AppendLinks(data, Link::hardPointer, {textStyle, 0, 0, 0, 0});
    data.BSs(-2, -2);
    AppendLinks(data, Link::hardOwner,
                {blockControl, layerControl, styleControl, linetypeControl, viewControl, ucsControl,
                 viewportControl, applicationControl, dimensionStyleControl, viewportEntityControl});
    AppendLinks(data, Link::hardPointer, {groupDictionary, multilineDictionary});
    data.H(Link::hardOwner, rootDictionary);
    data.BSs(1, 70);
    data.T("");
    data.T("");
    AppendLinks(data, Link::hardPointer, {layoutDictionary, plotSettingsDictionary, plotStyleDictionary});
    data.BL(0x2A1D);
    data.BS(metresUnit);
    data.BS(0);
    data.T(GuidText(fingerprint));
    data.T(GuidText(fingerprint + 1));
    AppendLinks(data, Link::hardPointer, {paperSpace, modelSpace, byLayer, byBlock, continuous});
    data.BSs(0, 0, 0, 0);
    return Section("\xCF\x7B\x1F\x23\xFD\xDE\x38\xA9\x5F\x7C\x68\xB8\x4E\x6D\x33\x5F"sv, data.Bytes(),
                   "\x30\x84\xE0\xDC\x02\x21\xC7\x56\xA0\x83\x97\x47\xB1\x92\xCC\xA0"sv);
}

std::string ClassesSection() {
    constexpr struct {
        int number;
        std::string_view className;
        std::string_view recordName;
    } classes[] = {{500, "AcDbDictionaryWithDefault", "ACDBDICTIONARYWDFLT"},
                   {501, "AcDbPlaceHolder", "ACDBPLACEHOLDER"},
                   {502, "AcDbLayout", "LAYOUT"}};
    BitStream data;
    for (const auto& one : classes) {
        data.BSs(one.number, 0);
        data.T("ObjectDBX Classes");
        data.T(one.className);
        data.T(one.recordName);
        data.B(false);
        data.BS(0x1F3);
    }
    return Section("\x8D\xA1\xC4\xB8\xC4\xA9\xF8\xC5\xC0\xDC\xF4\x5F\xE7\xCF\xB6\x8A"sv, data.Bytes(),
                   "\x72\x5E\x3B\x47\x3B\x56\x07\x3A\x3F\x23\x0B\xA0\x18\x30\x49\x75"sv);
}

}  // namespace workbench::dwg
