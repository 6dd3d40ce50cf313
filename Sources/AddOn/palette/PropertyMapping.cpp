#include "palette/PropertyMapping.hpp"

namespace {

constexpr const char* kindNames[] = {"TypePropertySingleValue", "TypePropertyListValue",
                                     "TypePropertyBoundedValue", "TypePropertyEnumeratedValue",
                                     "TypePropertyTableValue"};

/// The element after this one in the file, no further than below the root.
const xercesc::DOMElement* NextBelow(const xercesc::DOMElement& root, const xercesc::DOMElement* element) {
    if (const xercesc::DOMElement* child = element->getFirstElementChild()) return child;
    while (element != &root) {
        if (const xercesc::DOMElement* next = element->getNextElementSibling()) return next;
        const xercesc::DOMNode* parent = element->getParentNode();
        if (parent == nullptr || parent->getNodeType() != xercesc::DOMNode::ELEMENT_NODE) return nullptr;
        element = static_cast<const xercesc::DOMElement*>(parent);
    }
    return nullptr;
}

}  // namespace

bool RetreiveACProperties(const xercesc::DOMElement& element, PropertyMapData* data) {
    const xercesc::DOMElement* property = GetElementByTagName(element, "ACPropertyValue");
    if (property == nullptr) return false;
    data->groupName = GetAttribute(*property, "PropertyDefinitionGroupName");
    data->propertyName = GetAttribute(*property, "PropertyDefinitionName");
    return true;
}

bool RetrieveIfcProperty(const xercesc::DOMElement& element, PropertyMapData* data) {
    const xercesc::DOMElement* definition = GetElementByTagName(element, "PropertyDef");
    if (definition == nullptr) return false;
    const xercesc::DOMElement* name = GetElementByTagName(*definition, "Name");
    if (name == nullptr || !RetrievePropertyType(*definition, data)) return false;
    data->ifcPropertyName = GS::UniString(name->getTextContent());
    const xercesc::DOMElement* dataType = GetElementByTagName(*definition, "DataType");
    if (dataType != nullptr) data->ifcDataType = GetAttribute(*dataType, "type");
    return true;
}

bool RetrievePropertyType(const xercesc::DOMElement& element, PropertyMapData* data) {
    const xercesc::DOMElement* type = GetElementByTagName(element, "PropertyType");
    if (type == nullptr) return false;
    short kind = 0;
    for (const char* const name : kindNames) {
        if (GetElementByTagName(*type, name) != nullptr) {
            data->ifcPropertyKind = kind;
            break;
        }
        ++kind;
    }
    return true;
}

GS::UniString GetAttribute(const xercesc::DOMElement& element, const char* name) {
    return element.getAttribute(GS::UniString(name).ToUStr().Get());
}

// By a walk of its own: the library keeps each list that it was asked for as long as the document lives.
const xercesc::DOMElement* GetElementByTagName(const xercesc::DOMElement& element, const char* name) {
    const GS::UniString wanted = name;
    const xercesc::DOMElement* below = NextBelow(element, &element);
    while (below != nullptr && GS::UniString(below->getTagName()) != wanted)
        below = NextBelow(element, below);
    return below;
}
