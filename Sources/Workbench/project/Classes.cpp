#include "Workbench/project/Classes.hpp"

#include <algorithm>
#include <array>
#include <cctype>
#include <string>
#include <unordered_map>

namespace workbench {
namespace {

constexpr auto elementClasses = std::to_array<std::string_view>({
    // buildings
    "IfcBeam",
    "IfcBeamStandardCase",
    "IfcBuildingElement",
    "IfcBuildingElementPart",
    "IfcBuildingElementProxy",
    "IfcBuiltElement",
    "IfcChimney",
    "IfcColumn",
    "IfcColumnStandardCase",
    "IfcCovering",
    "IfcCurtainWall",
    "IfcDoor",
    "IfcDoorStandardCase",
    "IfcElementAssembly",
    "IfcFooting",
    "IfcMember",
    "IfcMemberStandardCase",
    "IfcPile",
    "IfcPlate",
    "IfcPlateStandardCase",
    "IfcProxy",
    "IfcRailing",
    "IfcRamp",
    "IfcRampFlight",
    "IfcRoof",
    "IfcShadingDevice",
    "IfcSlab",
    "IfcSlabElementedCase",
    "IfcSlabStandardCase",
    "IfcStair",
    "IfcStairFlight",
    "IfcWall",
    "IfcWallElementedCase",
    "IfcWallStandardCase",
    "IfcWindow",
    "IfcWindowStandardCase",
    // components
    "IfcDiscreteAccessory",
    "IfcElementComponent",
    "IfcFastener",
    "IfcImpactProtectionDevice",
    "IfcMechanicalFastener",
    "IfcReinforcingBar",
    "IfcReinforcingElement",
    "IfcReinforcingMesh",
    "IfcSign",
    "IfcTendon",
    "IfcTendonAnchor",
    "IfcTendonConduit",
    "IfcVibrationDamper",
    "IfcVibrationIsolator",
    // furniture, transport, surroundings, civil works
    "IfcBearing",
    "IfcBorehole",
    "IfcCaissonFoundation",
    "IfcCivilElement",
    "IfcCourse",
    "IfcDeepFoundation",
    "IfcEarthworksElement",
    "IfcEarthworksFill",
    "IfcEquipmentElement",
    "IfcFurnishingElement",
    "IfcFurniture",
    "IfcGeographicElement",
    "IfcGeomodel",
    "IfcGeoslice",
    "IfcGeotechnicalStratum",
    "IfcKerb",
    "IfcMooringDevice",
    "IfcNavigationElement",
    "IfcPavement",
    "IfcRail",
    "IfcReinforcedSoil",
    "IfcSystemFurnitureElement",
    "IfcTrackElement",
    "IfcTransportElement",
    "IfcTransportationDevice",
    "IfcVehicle",
    // distribution
    "IfcActuator",
    "IfcAirTerminal",
    "IfcAirTerminalBox",
    "IfcAirToAirHeatRecovery",
    "IfcAlarm",
    "IfcAudioVisualAppliance",
    "IfcBoiler",
    "IfcBurner",
    "IfcCableCarrierFitting",
    "IfcCableCarrierSegment",
    "IfcCableFitting",
    "IfcCableSegment",
    "IfcChiller",
    "IfcCoil",
    "IfcCommunicationsAppliance",
    "IfcCompressor",
    "IfcCondenser",
    "IfcController",
    "IfcConveyorSegment",
    "IfcCooledBeam",
    "IfcCoolingTower",
    "IfcDamper",
    "IfcDistributionBoard",
    "IfcDistributionChamberElement",
    "IfcDistributionControlElement",
    "IfcDistributionElement",
    "IfcDistributionFlowElement",
    "IfcDuctFitting",
    "IfcDuctSegment",
    "IfcDuctSilencer",
    "IfcElectricAppliance",
    "IfcElectricDistributionBoard",
    "IfcElectricDistributionPoint",
    "IfcElectricFlowStorageDevice",
    "IfcElectricFlowTreatmentDevice",
    "IfcElectricGenerator",
    "IfcElectricMotor",
    "IfcElectricTimeControl",
    "IfcElectricalElement",
    "IfcEnergyConversionDevice",
    "IfcEngine",
    "IfcEvaporativeCooler",
    "IfcEvaporator",
    "IfcFan",
    "IfcFilter",
    "IfcFireSuppressionTerminal",
    "IfcFlowController",
    "IfcFlowFitting",
    "IfcFlowInstrument",
    "IfcFlowMeter",
    "IfcFlowMovingDevice",
    "IfcFlowSegment",
    "IfcFlowStorageDevice",
    "IfcFlowTerminal",
    "IfcFlowTreatmentDevice",
    "IfcHeatExchanger",
    "IfcHumidifier",
    "IfcInterceptor",
    "IfcJunctionBox",
    "IfcLamp",
    "IfcLightFixture",
    "IfcLiquidTerminal",
    "IfcMedicalDevice",
    "IfcMobileTelecommunicationsAppliance",
    "IfcMotorConnection",
    "IfcOutlet",
    "IfcPipeFitting",
    "IfcPipeSegment",
    "IfcProtectiveDevice",
    "IfcProtectiveDeviceTrippingUnit",
    "IfcPump",
    "IfcSanitaryTerminal",
    "IfcSensor",
    "IfcSignal",
    "IfcSolarDevice",
    "IfcSpaceHeater",
    "IfcStackTerminal",
    "IfcSwitchingDevice",
    "IfcTank",
    "IfcTransformer",
    "IfcTubeBundle",
    "IfcUnitaryControlElement",
    "IfcUnitaryEquipment",
    "IfcValve",
    "IfcWasteTerminal",
});

constexpr auto spatialClasses = std::to_array<std::string_view>({
    "IFCSITE",
    "IFCBUILDING",
    "IFCBUILDINGSTOREY",
    "IFCSPACE",
    "IFCSPATIALZONE",
    "IFCEXTERNALSPATIALELEMENT",
    "IFCFACILITY",
    "IFCFACILITYPART",
    "IFCFACILITYPARTCOMMON",
    "IFCBRIDGE",
    "IFCBRIDGEPART",
    "IFCROAD",
    "IFCROADPART",
    "IFCRAILWAY",
    "IFCRAILWAYPART",
    "IFCMARINEFACILITY",
    "IFCMARINEPART",
});

constexpr auto otherProductClasses = std::to_array<std::string_view>({
    "IFCALIGNMENT",
    "IFCALIGNMENTCANT",
    "IFCALIGNMENTHORIZONTAL",
    "IFCALIGNMENTSEGMENT",
    "IFCALIGNMENTVERTICAL",
    "IFCANNOTATION",
    "IFCDISTRIBUTIONPORT",
    "IFCEARTHWORKSCUT",
    "IFCEDGEFEATURE",
    "IFCCHAMFEREDGEFEATURE",
    "IFCROUNDEDEDGEFEATURE",
    "IFCGRID",
    "IFCLINEARELEMENT",
    "IFCOPENINGELEMENT",
    "IFCOPENINGSTANDARDCASE",
    "IFCPORT",
    "IFCPOSITIONINGELEMENT",
    "IFCPROJECTIONELEMENT",
    "IFCREFERENT",
    "IFCSTRUCTURALCURVEACTION",
    "IFCSTRUCTURALCURVECONNECTION",
    "IFCSTRUCTURALCURVEMEMBER",
    "IFCSTRUCTURALCURVEMEMBERVARYING",
    "IFCSTRUCTURALCURVEREACTION",
    "IFCSTRUCTURALLINEARACTION",
    "IFCSTRUCTURALLINEARACTIONVARYING",
    "IFCSTRUCTURALPLANARACTION",
    "IFCSTRUCTURALPLANARACTIONVARYING",
    "IFCSTRUCTURALPOINTACTION",
    "IFCSTRUCTURALPOINTCONNECTION",
    "IFCSTRUCTURALPOINTREACTION",
    "IFCSTRUCTURALSURFACEACTION",
    "IFCSTRUCTURALSURFACECONNECTION",
    "IFCSTRUCTURALSURFACEMEMBER",
    "IFCSTRUCTURALSURFACEMEMBERVARYING",
    "IFCSTRUCTURALSURFACEREACTION",
    "IFCSURFACEFEATURE",
    "IFCVIRTUALELEMENT",
    "IFCVOIDINGFEATURE",
});

std::string Upper(std::string_view name) {
    std::string upper(name);
    for (char& c : upper)
        c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    return upper;
}

}  // namespace

std::string_view ElementClass(std::string_view type) {
    static const auto byType = [] {
        std::unordered_map<std::string, std::string_view> map;
        for (const std::string_view name : elementClasses)
            map.emplace(Upper(name), name);
        return map;
    }();
    const auto found = byType.find(std::string(type));
    return found == byType.end() ? std::string_view() : found->second;
}

bool IsSpatialClass(std::string_view type) {
    return std::ranges::find(spatialClasses, type) != spatialClasses.end();
}

bool IsProductClass(std::string_view type) {
    return !ElementClass(type).empty() || IsSpatialClass(type) ||
           std::ranges::find(otherProductClasses, type) != otherProductClasses.end();
}

}  // namespace workbench
