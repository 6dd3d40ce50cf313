#include "Workbench/exchange/merge/Measures.hpp"

#include <array>

namespace workbench {
namespace {

using enum ModelUnits::Kind;

constexpr auto plainNumbers = std::to_array<PlainNumbers>({
    // points, curves, surfaces
    {"IFCCARTESIANPOINT", length, 0, 0},
    {"IFCCARTESIANPOINTLIST2D", length, 0, 0},
    {"IFCCARTESIANPOINTLIST3D", length, 0, 0},
    {"IFCVECTOR", length, 1, 1},
    {"IFCCIRCLE", length, 1, 1},
    {"IFCELLIPSE", length, 1, 2},
    {"IFCOFFSETCURVE2D", length, 1, 1},
    {"IFCOFFSETCURVE3D", length, 1, 1},
    {"IFCCYLINDRICALSURFACE", length, 1, 1},
    {"IFCSPHERICALSURFACE", length, 1, 1},
    {"IFCTOROIDALSURFACE", length, 1, 2},
    {"IFCSURFACEOFLINEAREXTRUSION", length, 3, 3},
    {"IFCVIRTUALGRIDINTERSECTION", length, 1, 1},
    {"IFCPLANAREXTENT", length, 0, 1},
    {"IFCPLANARBOX", length, 0, 1},

    // solids
    {"IFCEXTRUDEDAREASOLID", length, 3, 3},
    {"IFCEXTRUDEDAREASOLIDTAPERED", length, 3, 3},
    {"IFCREVOLVEDAREASOLID", angle, 3, 3},
    {"IFCREVOLVEDAREASOLIDTAPERED", angle, 3, 3},
    {"IFCSWEPTDISKSOLID", length, 1, 2},
    {"IFCSWEPTDISKSOLIDPOLYGONAL", length, 1, 2},
    {"IFCSWEPTDISKSOLIDPOLYGONAL", length, 5, 5},
    {"IFCBLOCK", length, 1, 3},
    {"IFCRECTANGULARPYRAMID", length, 1, 3},
    {"IFCRIGHTCIRCULARCONE", length, 1, 2},
    {"IFCRIGHTCIRCULARCYLINDER", length, 1, 2},
    {"IFCSPHERE", length, 1, 1},
    {"IFCBOUNDINGBOX", length, 1, 3},

    // profiles
    {"IFCRECTANGLEPROFILEDEF", length, 3, 4},
    {"IFCROUNDEDRECTANGLEPROFILEDEF", length, 3, 5},
    {"IFCRECTANGLEHOLLOWPROFILEDEF", length, 3, 7},
    {"IFCCIRCLEPROFILEDEF", length, 3, 3},
    {"IFCCIRCLEHOLLOWPROFILEDEF", length, 3, 4},
    {"IFCELLIPSEPROFILEDEF", length, 3, 4},
    {"IFCTRAPEZIUMPROFILEDEF", length, 3, 6},
    {"IFCISHAPEPROFILEDEF", length, 3, 8},
    {"IFCISHAPEPROFILEDEF", angle, 9, 9},
    {"IFCASYMMETRICISHAPEPROFILEDEF", length, 3, 11},
    {"IFCASYMMETRICISHAPEPROFILEDEF", angle, 12, 12},
    {"IFCASYMMETRICISHAPEPROFILEDEF", length, 13, 13},
    {"IFCASYMMETRICISHAPEPROFILEDEF", angle, 14, 14},
    {"IFCLSHAPEPROFILEDEF", length, 3, 7},
    {"IFCLSHAPEPROFILEDEF", angle, 8, 8},
    {"IFCLSHAPEPROFILEDEF", length, 9, 10},
    {"IFCUSHAPEPROFILEDEF", length, 3, 8},
    {"IFCUSHAPEPROFILEDEF", angle, 9, 9},
    {"IFCUSHAPEPROFILEDEF", length, 10, 10},
    {"IFCTSHAPEPROFILEDEF", length, 3, 9},
    {"IFCTSHAPEPROFILEDEF", angle, 10, 11},
    {"IFCTSHAPEPROFILEDEF", length, 12, 12},
    {"IFCCSHAPEPROFILEDEF", length, 3, 8},
    {"IFCZSHAPEPROFILEDEF", length, 3, 8},
    {"IFCCRANERAILASHAPEPROFILEDEF", length, 3, 14},
    {"IFCCRANERAILFSHAPEPROFILEDEF", length, 3, 11},
    {"IFCCENTERLINEPROFILEDEF", length, 3, 3},

    // products, materials and their descriptions
    {"IFCSITE", length, 11, 11},
    {"IFCBUILDING", length, 9, 10},
    {"IFCBUILDINGSTOREY", length, 9, 9},
    {"IFCDOOR", length, 8, 9},
    {"IFCDOORSTANDARDCASE", length, 8, 9},
    {"IFCWINDOW", length, 8, 9},
    {"IFCWINDOWSTANDARDCASE", length, 8, 9},
    {"IFCSTAIRFLIGHT", length, 10, 11},
    {"IFCREINFORCINGBAR", length, 9, 9},
    {"IFCREINFORCINGBAR", area, 10, 10},
    {"IFCREINFORCINGBAR", length, 11, 11},
    {"IFCMECHANICALFASTENER", length, 8, 9},
    {"IFCMATERIALLAYER", length, 1, 1},
    {"IFCMATERIALLAYERWITHOFFSETS", length, 1, 1},
    {"IFCMATERIALLAYERSETUSAGE", length, 3, 4},
    {"IFCDOORLININGPROPERTIES", length, 4, 13},
    {"IFCDOORPANELPROPERTIES", length, 4, 4},
    {"IFCWINDOWLININGPROPERTIES", length, 4, 7},
    {"IFCWINDOWPANELPROPERTIES", length, 6, 7},
    {"IFCPERMEABLECOVERINGPROPERTIES", length, 6, 7},
});

constexpr auto namedValues = std::to_array<NamedValue>({
    {"IFCPROPERTYSINGLEVALUE", std::nullopt, 2, 3},
    {"IFCPROPERTYLISTVALUE", std::nullopt, 2, 3},
    {"IFCPROPERTYBOUNDEDVALUE", std::nullopt, 2, 4},
    {"IFCPROPERTYBOUNDEDVALUE", std::nullopt, 3, 4},
    {"IFCPROPERTYTABLEVALUE", std::nullopt, 2, 5},
    {"IFCPROPERTYTABLEVALUE", std::nullopt, 3, 6},
    {"IFCQUANTITYLENGTH", length, 3, 2},
    {"IFCQUANTITYAREA", area, 3, 2},
    {"IFCQUANTITYVOLUME", volume, 3, 2},
});

}  // namespace

std::span<const PlainNumbers> PlainNumbersTable() {
    return plainNumbers;
}
std::span<const NamedValue> NamedValueTable() {
    return namedValues;
}

}  // namespace workbench
