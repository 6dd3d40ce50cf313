#include "Workbench/dwg/Tables.hpp"

#include <algorithm>
#include <numbers>
#include <string>

#include "Workbench/dwg/Text.hpp"

namespace workbench::dwg {
namespace {

using Handles = std::vector<std::uint32_t>;

// Numbers of the classes that the file declares.
constexpr int dictionaryWithDefaultType = 500;
constexpr int placeholderType = 501;
constexpr int layoutType = 502;

void Links(Object& object, Link link, const Handles& handles) {
    for (const std::uint32_t handle : handles)
        object.H(link, handle);
}

Object Control(int type, std::uint32_t handle, const Handles& entries, const Handles& owned = {}) {
    Object object(type, handle);
    object.BL(0);
    object.BL(static_cast<std::uint32_t>(entries.size()));
    if (type == 68) object.RC(0);
    object.EndData();
    object.H(Link::softPointer, 0);
    object.H(Link::hardOwner, 0);
    Links(object, Link::softOwner, entries);
    Links(object, Link::hardOwner, owned);
    return object;
}

struct Item {
    const char* name;
    std::uint32_t handle;
};

Object Dictionary(int type, std::uint32_t handle, const std::vector<Item>& items) {
    const bool isRoot = handle == rootDictionary;
    Object object(type, handle);
    object.BL(isRoot ? 0 : 1);
    object.BL(static_cast<std::uint32_t>(items.size()));
    object.BS(1);
    object.RC(0);
    for (const Item& item : items)
        object.T(item.name);
    object.EndData();
    object.H(Link::softPointer, isRoot ? nothing : rootDictionary);
    if (!isRoot) object.H(Link::softPointer, rootDictionary);
    object.H(Link::hardOwner, 0);
    for (const Item& item : items)
        object.H(Link::softOwner, item.handle);
    if (type == dictionaryWithDefaultType) object.H(Link::hardPointer, plotStyle);
    return object;
}

Object Record(int type, std::uint32_t handle, std::string_view name) {
    Object object(type, handle);
    object.BL(0);
    object.T(name);
    object.B(true);
    object.BS(0);
    object.B(false);
    return object;
}

void EndRecord(Object& object, std::uint32_t control, const Handles& pointers = {}) {
    object.EndData();
    object.H(Link::softPointer, control);
    object.H(Link::hardOwner, 0);
    object.H(Link::hardPointer, 0);
    Links(object, Link::hardPointer, pointers);
}

// What belongs to a dictionary and tells it of its changes.
void EndItem(Object& object, std::uint32_t dictionary) {
    object.EndData();
    object.H(Link::softPointer, dictionary);
    object.H(Link::softPointer, dictionary);
    object.H(Link::hardOwner, 0);
}

Object LayerRecord(std::uint32_t handle, std::string_view name, Colour colour) {
    constexpr int isPlotted = 0x10;
    constexpr int usualWidth = 31 << 5;
    Object object = Record(51, handle, name);
    object.BS(isPlotted | usualWidth);
    object.BS(colour);
    EndRecord(object, layerControl, {plotStyle, continuous});
    return object;
}

Object StyleRecord() {
    Object object = Record(53, textStyle, "Standard");
    object.Bs(0, 0);
    object.BDs(0, 1, 0);
    object.RC(0);
    object.BD(0.2);
    object.T("arial.ttf");
    object.T("");
    EndRecord(object, styleControl);
    return object;
}

Object LinetypeRecord(std::uint32_t handle, const char* name, const char* description) {
    Object object = Record(57, handle, name);
    object.T(description);
    object.BD(0);
    object.RC('A');
    object.RC(0);
    for (int at = 0; at < 256; ++at)
        object.RC(0);
    EndRecord(object, linetypeControl);
    return object;
}

Object ApplicationRecord() {
    Object object = Record(67, application, "ACAD");
    object.RC(0);
    EndRecord(object, applicationControl);
    return object;
}

Object DimensionStyleRecord() {
    Object object = Record(69, dimensionStyle, "Standard");
    object.T("");
    object.T("");
    AppendDimensionSettings(object);
    object.BSs(-2, -2);
    object.B(false);
    EndRecord(object, dimensionStyleControl, {textStyle, 0, 0, 0, 0});
    return object;
}

// So that the drawing opens with all of it in view.
Object ViewportRecord(const Extents& extents) {
    constexpr double aspect = 1.6;
    const bool isEmpty = extents.IsEmpty();
    const Point min = isEmpty ? Point{0, 0} : extents.min;
    const Point max = isEmpty ? Point{10 * aspect, 10} : extents.max;
    const double height = std::max({max.y - min.y, (max.x - min.x) / aspect, 0.1}) * 1.05;

    Object object = Record(65, viewport, "*Active");
    object.BDs(height, aspect * height);
    object.RD2((min.x + max.x) / 2, (min.y + max.y) / 2);
    object.BD3(0, 0, 0);
    object.BD3(0, 0, 1);
    object.BDs(0, 50, 0, 0);
    object.Bs(0, 0, 0, 1);
    object.RC(0);
    object.RD2(0, 0);
    object.RD2(1, 1);
    object.B(false);
    object.BS(1000);
    object.B(true);
    object.BB(3);
    object.B(false);
    object.RD2(1, 1);
    object.Bs(0, 0);
    object.BS(0);
    object.BD(0);
    object.RD2(0, 0);
    object.RD2(1, 1);
    object.Bs(0, 1);
    object.BD3(0, 0, 0);
    object.BD3(1, 0, 0);
    object.BD3(0, 1, 0);
    object.BD(0);
    object.BS(0);
    EndRecord(object, viewportControl, {0, 0});
    return object;
}

struct Space {
    std::uint32_t handle;
    const char* name;
    std::uint32_t block;
    std::uint32_t blockEnd;
    std::uint32_t layout;
};
constexpr Space model{modelSpace, "*Model_Space", modelBlock, modelBlockEnd, modelLayout};
constexpr Space paper{paperSpace, "*Paper_Space", paperBlock, paperBlockEnd, paperLayout};

Object SpaceRecord(const Space& space, const EntityRange& entities) {
    Object object = Record(49, space.handle, space.name);
    object.Bs(0, 0, 0, 0, 0);
    object.BD3(0, 0, 0);
    object.T("");
    object.RC(0);
    object.T("");
    object.BL(0);
    EndRecord(object, blockControl);
    const bool isEmpty = entities.count == 0;
    object.H(Link::hardOwner, space.block);
    object.H(Link::softPointer, isEmpty ? 0 : entities.first);
    object.H(Link::softPointer, isEmpty ? 0 : entities.first + entities.count - 1);
    object.H(Link::hardOwner, space.blockEnd);
    object.H(Link::hardPointer, space.layout);
    return object;
}

Object PlotStyle() {
    Object object(placeholderType, plotStyle);
    object.BL(1);
    EndItem(object, plotStyleDictionary);
    return object;
}

Object MultilineStyle() {
    Object object(73, multilineStyle);
    object.BL(1);
    object.T("STANDARD");
    object.T("");
    object.BSs(0, 256);
    object.BDs(std::numbers::pi / 2, std::numbers::pi / 2);
    object.RC(2);
    for (const double offset : {0.5, -0.5}) {
        object.BD(offset);
        object.BSs(256, 32767);
    }
    EndItem(object, multilineDictionary);
    return object;
}

Object Layout(const Space& space) {
    const bool isModel = space.handle == modelSpace;
    Object object(layoutType, space.layout);
    object.BL(1);
    // How to plot it.
    object.T("");
    object.T("none_device");
    object.BS(isModel ? 0x6B0 : 0x2B0);
    object.BDs(0, 0, 0, 0, 0, 0);
    object.T("");
    object.BDs(0, 0);
    object.BSs(0, 0, isModel ? 0 : 5);
    object.BDs(0, 0, 0, 0);
    object.T("");
    object.BDs(1, 1);
    object.T("");
    object.BS(16);
    object.BDs(1, 0, 0);
    // The layout itself.
    object.T(isModel ? "Model" : "Layout1");
    object.BL(isModel ? 0 : 1);
    object.BS(1);
    object.BD3(0, 0, 0);
    object.RD2(0, 0);
    object.RD2(12, 9);
    object.BD3(0, 0, 0);
    object.BD3(1, 0, 0);
    object.BD3(0, 1, 0);
    object.BD(0);
    object.BS(0);
    object.BD3(0, 0, 0);
    object.BD3(0, 0, 0);
    EndItem(object, layoutDictionary);
    object.H(Link::softPointer, space.handle);
    object.H(Link::softPointer, isModel ? viewport : nothing);
    object.H(Link::hardPointer, 0);
    object.H(Link::hardPointer, 0);
    return object;
}

void AddControls(ObjectList& objects, const Handles& layerHandles) {
    objects.Add(blockControl, Control(48, blockControl, {}, {modelSpace, paperSpace}));
    objects.Add(layerControl, Control(50, layerControl, layerHandles));
    objects.Add(styleControl, Control(52, styleControl, {textStyle}));
    objects.Add(linetypeControl, Control(56, linetypeControl, {continuous}, {byBlock, byLayer}));
    objects.Add(viewControl, Control(60, viewControl, {}));
    objects.Add(ucsControl, Control(62, ucsControl, {}));
    objects.Add(viewportControl, Control(64, viewportControl, {viewport}));
    objects.Add(applicationControl, Control(66, applicationControl, {application}));
    objects.Add(dimensionStyleControl, Control(68, dimensionStyleControl, {dimensionStyle}));
    objects.Add(viewportEntityControl, Control(70, viewportEntityControl, {}));
}

}  // namespace

void AppendDimensionSettings(BitStream& stream) {
    stream.BDs(1, .18, .0625, .38, .18, 0, 0, 0, 0);
    stream.Bs(0, 0, 1, 1, 0, 0);
    stream.BSs(0, 0, 0);
    stream.BDs(.18, .09, 0, 25.4, 1, 0, 1, .09, 0);
    stream.B(false);
    stream.BS(2);
    stream.Bs(0, 0, 0, 0);
    stream.BSs(0, 0, 0);
    stream.BSs(0, 4, 4, 2, 2, 0, 0, 2, 46, 0, 0);
    stream.Bs(0, 0);
    stream.BSs(1, 0, 0, 0);
    stream.B(false);
    stream.BS(3);
}

void AddTables(ObjectList& objects, const std::vector<Layer>& layers, const EntityRange& entities,
               const Extents& extents) {
    Handles layerHandles{layerZero};
    for (std::size_t at = 0; at < layers.size(); ++at)
        layerHandles.push_back(firstFree + static_cast<std::uint32_t>(at));

    AddControls(objects, layerHandles);
    objects.Add(rootDictionary, Dictionary(42, rootDictionary,
                                           {{"ACAD_GROUP", groupDictionary},
                                            {"ACAD_LAYOUT", layoutDictionary},
                                            {"ACAD_MLINESTYLE", multilineDictionary},
                                            {"ACAD_PLOTSETTINGS", plotSettingsDictionary},
                                            {"ACAD_PLOTSTYLENAME", plotStyleDictionary}}));
    objects.Add(groupDictionary, Dictionary(42, groupDictionary, {}));
    objects.Add(plotStyleDictionary,
                Dictionary(dictionaryWithDefaultType, plotStyleDictionary, {{"Normal", plotStyle}}));
    objects.Add(plotStyle, PlotStyle());
    objects.Add(layerZero, LayerRecord(layerZero, "0", 7));
    objects.Add(textStyle, StyleRecord());
    objects.Add(application, ApplicationRecord());
    objects.Add(byBlock, LinetypeRecord(byBlock, "ByBlock", ""));
    objects.Add(byLayer, LinetypeRecord(byLayer, "ByLayer", ""));
    objects.Add(continuous, LinetypeRecord(continuous, "Continuous", "Solid line"));
    objects.Add(multilineDictionary, Dictionary(42, multilineDictionary, {{"Standard", multilineStyle}}));
    objects.Add(multilineStyle, MultilineStyle());
    objects.Add(plotSettingsDictionary, Dictionary(42, plotSettingsDictionary, {}));
    objects.Add(layoutDictionary,
                Dictionary(42, layoutDictionary, {{"Layout1", paperLayout}, {"Model", modelLayout}}));
    objects.Add(paperSpace, SpaceRecord(paper, {}));
    objects.Add(paperBlock, BlockBegin(paperBlock, paper.name));
    objects.Add(paperBlockEnd, BlockEnd(paperBlockEnd));
    objects.Add(paperLayout, Layout(paper));
    objects.Add(modelSpace, SpaceRecord(model, entities));
    objects.Add(modelBlock, BlockBegin(modelBlock, model.name));
    objects.Add(modelBlockEnd, BlockEnd(modelBlockEnd));
    objects.Add(modelLayout, Layout(model));
    objects.Add(dimensionStyle, DimensionStyleRecord());
    objects.Add(viewport, ViewportRecord(extents));

    const std::vector<std::string> names = LayerNames(layers);
    for (std::size_t at = 0; at < layers.size(); ++at)
        objects.Add(layerHandles[at + 1], LayerRecord(layerHandles[at + 1], names[at], layers[at].colour));
}

}  // namespace workbench::dwg
