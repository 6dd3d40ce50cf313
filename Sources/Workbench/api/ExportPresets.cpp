#include "Workbench/api/ExportPresets.hpp"

#include <algorithm>
#include <iterator>
#include <nlohmann/json.hpp>

#include "HostKit/API/PropertyMappingCommands.hpp"
#include "HostKit/GSRoot/Text.hpp"

namespace workbench {

namespace {

namespace mapping = hostkit::mapping;
using Json = nlohmann::json;

std::string TextIn(const Json& object, const char* name) {
    return object.at(name).get_ref<const std::string&>();
}

MappedProperty PropertyOf(const Json& object) {
    const auto kind = object.at("ifcPropertyKind").get_ref<const Json::number_unsigned_t&>();
    if (kind > static_cast<unsigned>(PropertyKind::table)) throw std::out_of_range("no such kind");
    return {.group = TextIn(object, "groupName"),
            .property = TextIn(object, "propertyName"),
            .name = TextIn(object, "ifcPropertyName"),
            .kind = static_cast<PropertyKind>(kind),
            .dataType = TextIn(object, "ifcDataType")};
}

MappedSet SetOf(const Json& object) {
    MappedSet set{TextIn(object, "ifcEntityType"), TextIn(object, "propertySetName"), {}};
    for (const Json& property : object.at("properties").get_ref<const Json::array_t&>())
        set.properties.push_back(PropertyOf(property));
    return set;
}

}  // namespace

GSErrCode ExportPresets::Call(const hostkit::CommandCall& call,
                              const hostkit::CommandParameters& parameters) {
    if (call.command != mapping::createPreset && call.command != mapping::addMappings)
        return APIERR_MODULCMDNOTSUPPORTED;
    if (call.version != mapping::version) return APIERR_MODULCMDVERSNOTSUPPORTED;
    return call.command == mapping::createPreset ? Create(parameters) : Add(parameters);
}

GSErrCode ExportPresets::Create(const hostkit::CommandParameters& parameters) {
    const std::string* type = parameters.FindText("presetType");
    const std::string* name = parameters.FindText("presetName");
    if (type == nullptr || *type != mapping::presetType || name == nullptr || name->empty())
        return APIERR_BADPARS;
    presets[*name].clear();
    applying = *name;
    return NoError;
}

GSErrCode ExportPresets::Add(const hostkit::CommandParameters& parameters) {
    const std::string* name = parameters.FindText("presetName");
    const auto* text = static_cast<const GS::UniString*>(parameters.FindPointer("newMappings"));
    if (name == nullptr || text == nullptr) return APIERR_BADPARS;
    const auto preset = presets.find(*name);
    if (preset == presets.end()) return APIERR_BADNAME;
    std::vector<MappedSet> added;
    try {
        const Json sets = Json::parse(hostkit::ToUtf8(*text));
        for (const Json& set : sets.get_ref<const Json::array_t&>())
            added.push_back(SetOf(set));
    } catch (const std::exception&) {
        return APIERR_BADPARS;
    }
    std::ranges::move(added, std::back_inserter(preset->second));
    return NoError;
}

std::span<const MappedSet> ExportPresets::Applying() const {
    const auto found = presets.find(applying);
    if (found == presets.end()) return {};
    return found->second;
}

}  // namespace workbench
