#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Workbench/exchange/PropertyMapping.hpp"
#include "Workbench/exchange/mapping/DataType.hpp"

namespace workbench {

/// What a property of a document holds, as views into its text.
struct PropertyValue {
    enum class Shape { values, bounds, table };
    Shape shape = Shape::values;
    std::vector<std::string_view> values;    // of a table those that are defined
    std::vector<std::string_view> defining;  // of a table
    std::string_view upper = "$", lower = "$", setPoint = "$";
    std::string_view unit = "$", definingUnit = "$";
    std::string_view enumeration = "$";
    std::string_view expression = "$", interpolation = "$";  // of a table
    std::string_view description = "$";
};

/// Of a record of one of the five kinds. Nothing for others, and for a property without a value.
std::optional<PropertyValue> ReadPropertyValue(std::string_view type, std::string_view text);

/// A kind of property and the data type of its values.
struct PropertyForm {
    PropertyKind kind = PropertyKind::single;
    DataType type;
    bool isOld = false;  // IFC2x3 writes some kinds with an attribute less
};

/// "IFCPROPERTYSINGLEVALUE('name',description,...)" for the value; the name is encoded already. A value
/// becomes a list of one and back, a list of numbers the bounds around them or a table that counts them.
/// Nothing when the value does not fit.
std::optional<std::string> WritePropertyValue(const PropertyValue& value, std::string_view encodedName,
                                              const PropertyForm& form);

}  // namespace workbench
