#include "host/PropertyPreset.hpp"
#include "palette/KestranePalette.hpp"
#include "palette/PickedItem.hpp"
#include "script/Json.hpp"

#include "DOMReader.hpp"
#include "FileTypeManager.hpp"

#include <algorithm>

namespace {

constexpr const char* rootName = "SchemeItemList";
constexpr const char* presetType = "PropertyMappingExportPreset";
constexpr const char* presetName = "Kestrane Ifc Property Mapping Export Preset Name";

/// A number for the pair of names: different ones have hardly ever the same.
UInt32 KeyOf(const GS::UniString& entityType, const GS::UniString& setName) {
    UInt32 key = 2166136261;
    for (const GS::UniString* name : {&entityType, &setName}) {
        for (UIndex i = 0; i < name->GetLength(); ++i)
            key = (key ^ (*name)[i]) * 16777619;
    }
    return key;
}

JSON::ValueRef ToJson(const PropertyMapData& data) {
    const JSON::ObjectValueRef property = new JSON::ObjectValue();
    AddText(*property, "groupName", data.groupName);
    AddText(*property, "propertyName", data.propertyName);
    AddText(*property, "ifcPropertyName", data.ifcPropertyName);
    property->AddValue("ifcPropertyKind", new JSON::NumberValue(Int32{data.ifcPropertyKind}));
    AddText(*property, "ifcDataType", data.ifcDataType);
    return property;
}

JSON::ValueRef ToJson(const SchemeProperty& scheme) {
    const JSON::ArrayValueRef properties = new JSON::ArrayValue();
    for (const PropertyMapData& data : scheme.properties)
        properties->AddValue(ToJson(data));
    const JSON::ObjectValueRef set = new JSON::ObjectValue();
    AddText(*set, "ifcEntityType", scheme.ifcEntityType);
    AddText(*set, "propertySetName", scheme.propertySetName);
    set->AddValue("properties", properties);
    return set;
}

}  // namespace

GS::UniString KestranePalette::OpenMappingFile() {
    return HasInstance() ? GetInstance().OpenMapFile() : GS::UniString();
}

GS::UniString KestranePalette::OpenMapFile() {
    IO::Location location;
    GS::UniString path;
    if (!GetMapFileLocation(&location) || !GetPropertyMapData(location) || location.ToPath(&path) != NoError)
        return GS::UniString();
    return path;
}

bool KestranePalette::GetMapFileLocation(IO::Location* location) {
    const GS::UniString filterText = "Property Mapping File";
    FTM::FileTypeManager manager("MapFileManager");
    const FTM::FileType xml(nullptr, "xml", 0, 0, 0);
    FTM::TypeID type = FTM::FileTypeManager::SearchForType(xml);
    if (type == FTM::UnknownType) type = manager.AddType(xml);

    DG::FileDialog dialog(DG::FileDialog::OpenFile);
    dialog.SetTitle(filterText);
    dialog.SetFilterText(dialog.AddFilter(type), filterText);
    if (!dialog.Invoke()) return false;
    *location = dialog.GetSelectedFile();
    return true;
}

bool KestranePalette::GetPropertyMapData(const IO::Location& location) {
    try {
        const GSXML::DOMReader reader(location, rootName);
        const xercesc::DOMElement* root = reader.GetActualNode();
        if (root == nullptr || GS::UniString(root->getTagName()) != rootName) return false;
        CleanPropertyMaps();
        for (const xercesc::DOMNode* node = root->getFirstChild(); node != nullptr;
             node = node->getNextSibling())
            ReadElement(*node);
        return true;
    } catch (const GS::Exception&) {
        return false;
    }
}

void KestranePalette::ReadElement(const xercesc::DOMNode& node) {
    if (node.getNodeType() != xercesc::DOMNode::ELEMENT_NODE) return;
    if (GS::UniString(node.getNodeName()) != "SchemeProperty") return;
    ReadPropertyElement(static_cast<const xercesc::DOMElement&>(node));
}

void KestranePalette::ReadPropertyElement(const xercesc::DOMElement& element) {
    const GS::UniString entityType = GetAttribute(element, "IFCEntityType");
    const GS::UniString setName = GetAttribute(element, "PropertySetName");
    if (entityType.IsEmpty() || setName.IsEmpty()) return;
    PropertyMapData data;
    if (!RetreiveACProperties(element, &data) || !RetrieveIfcProperty(element, &data)) return;
    if (SchemeProperty* known = GetSchemePropertyByName(entityType, setName)) {
        known->properties.Push(data);
    } else {
        mappingProperties.Push({entityType, setName, {data}});
        mappingKeys.push_back(KeyOf(entityType, setName));
    }
}

SchemeProperty* KestranePalette::GetSchemePropertyByName(const GS::UniString& entityType,
                                                         const GS::UniString& setName) {
    const UInt32 key = KeyOf(entityType, setName);
    for (auto at = mappingKeys.begin(); (at = std::find(at, mappingKeys.end(), key)) != mappingKeys.end();
         ++at) {
        SchemeProperty& scheme = mappingProperties[static_cast<UIndex>(at - mappingKeys.begin())];
        if (scheme.ifcEntityType == entityType && scheme.propertySetName == setName) return &scheme;
    }
    return nullptr;
}

void KestranePalette::CleanPropertyMaps() {
    mappingProperties.Clear();
    mappingKeys.clear();
}

void KestranePalette::CreatePreset() {
    CreateExportPreset(presetType, presetName);
}

void KestranePalette::AddNewPropertyMappingForExport() {
    JSON::ArrayValue mappings;
    for (const SchemeProperty& scheme : mappingProperties)
        mappings.AddValue(ToJson(scheme));
    AddMappingsToPreset(presetName, WriteJson(mappings));
}
