#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace workbench {

/// A simple type or measure that property values can have, in the schema given ("IFC2X3"). Its name may be
/// in any letter case; an empty one stands for the type that a value has already.
class DataType {
  public:
    DataType(std::string_view name, std::string_view schema);

    /// The value, "IFCREAL(1.5)", as one of this type: numbers from texts and texts from numbers, truth
    /// values from words. Nothing where that would lose something, or make a value that the type does not
    /// allow, or where the schema has no such type.
    std::optional<std::string> Convert(std::string_view value) const;

  private:
    enum class Family { unknown, unchanged, text, truth, integer, real };
    std::string name;  // in upper case
    Family family = Family::unknown;

    std::optional<std::string> Text(std::string_view plain) const;
    std::optional<std::string> Truth(std::string_view plain) const;
    std::optional<std::string> Number(std::string_view plain) const;
};

/// Whether the value, "IFCREAL(1.5)", is a number.
bool IsNumber(std::string_view value);

}  // namespace workbench
