#include "Workbench/exchange/mapping/PropertyValue.hpp"

#include <algorithm>

#include "Workbench/step/Arguments.hpp"

namespace workbench {
namespace {

using Texts = std::vector<std::string>;

std::vector<std::string_view> Listed(std::string_view argument) {
    if (!argument.starts_with('(')) return {};
    std::vector<std::string_view> values = step::Arguments(argument);
    std::erase_if(values, step::IsUnset);
    return values;
}

/// All of them in that type, or nothing.
std::optional<Texts> Converted(const std::vector<std::string_view>& values, const DataType& type) {
    Texts texts;
    for (const std::string_view value : values) {
        auto text = type.Convert(value);
        if (!text) return std::nullopt;
        texts.push_back(*std::move(text));
    }
    return texts;
}

std::string List(const Texts& texts) {
    std::string list;
    for (const std::string& text : texts)
        list.append(list.empty() ? "(" : ",").append(text);
    return list + ')';
}

/// "TYPE('name',description,a,b)".
std::string Property(std::string_view type, std::string_view name, const PropertyValue& value,
                     std::initializer_list<std::string_view> rest) {
    std::string text(type);
    text.append("(").append(name).append(",").append(value.description);
    for (const std::string_view argument : rest)
        text.append(",").append(argument);
    return text + ')';
}

/// A unit says something about numbers only.
std::string_view UnitFor(std::string_view unit, std::string_view value) {
    return IsNumber(value) ? unit : "$";
}

std::optional<std::string> Bounded(const PropertyValue& value, std::string_view name,
                                   const PropertyForm& form) {
    std::string upper = "$", lower = "$", setPoint = "$";
    std::string number;  // one of them
    const auto set = [&](std::string& bound, std::string_view from) {
        if (step::IsUnset(from)) return true;
        bound = form.type.Convert(from).value_or("");
        number = bound;
        return IsNumber(bound);
    };
    if (value.shape == PropertyValue::Shape::bounds) {
        if (!set(upper, value.upper) || !set(lower, value.lower) || !set(setPoint, value.setPoint))
            return std::nullopt;
    } else {
        const auto numbers = Converted(value.values, form.type);
        if (!numbers || !std::ranges::all_of(*numbers, IsNumber)) return std::nullopt;
        const auto [least, most] =
            std::ranges::minmax_element(*numbers, {}, [](const auto& text) { return *step::AsReal(text); });
        lower = *least;
        upper = number = *most;
        if (numbers->size() == 1) setPoint = upper;
    }
    const std::string_view unit = UnitFor(value.unit, number);
    if (form.isOld) return Property("IFCPROPERTYBOUNDEDVALUE", name, value, {upper, lower, unit});
    return Property("IFCPROPERTYBOUNDEDVALUE", name, value, {upper, lower, unit, setPoint});
}

std::optional<std::string> Table(const PropertyValue& value, std::string_view name,
                                 const PropertyForm& form) {
    const auto defined = Converted(value.values, form.type);
    if (!defined) return std::nullopt;
    Texts defining(value.defining.begin(), value.defining.end());
    for (size_t row = 1; value.shape != PropertyValue::Shape::table && row <= defined->size(); ++row)
        defining.push_back("IFCINTEGER(" + std::to_string(row) + ')');
    std::string text = Property("IFCPROPERTYTABLEVALUE", name, value,
                                {List(defining), List(*defined), value.expression, value.definingUnit,
                                 UnitFor(value.unit, defined->front())});
    if (!form.isOld) text.insert(text.size() - 1, "," + std::string(value.interpolation));
    return text;
}

}  // namespace

std::optional<PropertyValue> ReadPropertyValue(std::string_view type, std::string_view text) {
    std::vector<std::string_view> arguments = step::Arguments(text);
    arguments.resize(std::max<size_t>(arguments.size(), 8), "$");
    PropertyValue value;
    value.description = arguments[1];
    if (type == "IFCPROPERTYSINGLEVALUE") {
        if (!step::IsUnset(arguments[2])) value.values = {arguments[2]};
        value.unit = arguments[3];
    } else if (type == "IFCPROPERTYLISTVALUE") {
        value.values = Listed(arguments[2]);
        value.unit = arguments[3];
    } else if (type == "IFCPROPERTYENUMERATEDVALUE") {
        value.values = Listed(arguments[2]);
        value.enumeration = arguments[3];
    } else if (type == "IFCPROPERTYBOUNDEDVALUE") {
        value.shape = PropertyValue::Shape::bounds;
        value.upper = arguments[2];
        value.lower = arguments[3];
        value.unit = arguments[4];
        value.setPoint = arguments[5];
        if (step::IsUnset(value.upper) && step::IsUnset(value.lower) && step::IsUnset(value.setPoint))
            return std::nullopt;
        return value;
    } else if (type == "IFCPROPERTYTABLEVALUE") {
        value.shape = PropertyValue::Shape::table;
        value.defining = Listed(arguments[2]);
        value.values = Listed(arguments[3]);
        value.expression = arguments[4];
        value.definingUnit = arguments[5];
        value.unit = arguments[6];
        value.interpolation = arguments[7];
        if (value.defining.size() != value.values.size()) return std::nullopt;
    }
    if (value.values.empty()) return std::nullopt;
    return value;
}

std::optional<std::string> WritePropertyValue(const PropertyValue& value, std::string_view encodedName,
                                              const PropertyForm& form) {
    if (form.kind == PropertyKind::table) {
        if (value.shape == PropertyValue::Shape::bounds) return std::nullopt;
        return Table(value, encodedName, form);
    }
    if (value.shape == PropertyValue::Shape::table) return std::nullopt;
    if (form.kind == PropertyKind::bounded) return Bounded(value, encodedName, form);

    // Bounds become a value when they leave but one.
    std::vector<std::string_view> values = value.values;
    if (value.shape == PropertyValue::Shape::bounds) {
        const bool isOne = value.upper == value.lower;
        if (step::IsUnset(value.setPoint) && !isOne) return std::nullopt;
        values = {step::IsUnset(value.setPoint) ? value.upper : value.setPoint};
    }
    const auto texts = Converted(values, form.type);
    if (!texts) return std::nullopt;
    const std::string_view unit = UnitFor(value.unit, texts->front());
    switch (form.kind) {
        case PropertyKind::list:
            return Property("IFCPROPERTYLISTVALUE", encodedName, value, {List(*texts), unit});
        case PropertyKind::enumerated: {
            const bool isUnchanged = std::ranges::equal(*texts, values);
            return Property("IFCPROPERTYENUMERATEDVALUE", encodedName, value,
                            {List(*texts), isUnchanged ? value.enumeration : "$"});
        }
        default:
            if (texts->size() != 1) return std::nullopt;
            return Property("IFCPROPERTYSINGLEVALUE", encodedName, value, {texts->front(), unit});
    }
}

}  // namespace workbench
