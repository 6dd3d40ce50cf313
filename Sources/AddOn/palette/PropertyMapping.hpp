#pragma once

#include "Array.hpp"
#include "UniString.hpp"

#include <xercesc/dom/DOMElement.hpp>

// The parts of a mapping file: which property of the host fills which property of IFC. What is read stays as
// it stands in the file.

/// One property: of the host, and what it becomes in IFC.
struct PropertyMapData {
    GS::UniString groupName;
    GS::UniString propertyName;
    GS::UniString ifcPropertyName;
    short ifcPropertyKind = 0;  // 0 single, 1 list, 2 bounded, 3 enumerated, 4 table
    GS::UniString ifcDataType;
};

/// One property set of one IFC entity type, with its properties in the file's order.
struct SchemeProperty {
    GS::UniString ifcEntityType;
    GS::UniString propertySetName;
    GS::Array<PropertyMapData> properties;
};

// They fill their part of the record; false when an element is missing that it needs.

bool RetreiveACProperties(const xercesc::DOMElement& element, PropertyMapData* data);
bool RetrieveIfcProperty(const xercesc::DOMElement& element, PropertyMapData* data);
bool RetrievePropertyType(const xercesc::DOMElement& element, PropertyMapData* data);

/// The attribute's text; empty when there is none.
GS::UniString GetAttribute(const xercesc::DOMElement& element, const char* name);

/// The first element of this name below the element, in the file's order; null when there is none.
const xercesc::DOMElement* GetElementByTagName(const xercesc::DOMElement& element, const char* name);
