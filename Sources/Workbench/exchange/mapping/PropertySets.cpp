#include "Workbench/exchange/mapping/PropertySets.hpp"

#include <algorithm>

#include "Workbench/step/Arguments.hpp"

namespace workbench {
namespace {

bool IsTypeClass(std::string_view name) {
    return name.ends_with("TYPE") || name.ends_with("STYLE") || name == "IFCTYPEPRODUCT" ||
           name == "IFCTYPEOBJECT";
}

}  // namespace

uint32_t Names::Of(const std::string& text) {
    return byText.try_emplace(text, static_cast<uint32_t>(byText.size())).first->second;
}

uint32_t Names::OfArgument(std::string_view argument) {
    const auto found = byArgument.find(argument);
    if (found != byArgument.end()) return found->second;
    const uint32_t name = Of(step::AsText(argument).value_or(""));
    byArgument.emplace(argument, name);
    return name;
}

PropertySets::PropertySets(const step::Document& document, Names& names) : document(document), names(names) {
    for (const step::Record* record : document.RecordsOf({"IFCPROPERTYSET"})) {
        if (document.Find(record->id) != record) continue;
        placesOfSets.emplace(record->id, static_cast<uint32_t>(sets.size()));
        Set& set = sets.emplace_back();
        set.id = record->id;
        set.name = names.OfArgument(step::Argument(document.Text(*record), 2));
    }
    ReadRelations();
    ReadTypes();
}

void PropertySets::ReadRelations() {
    for (const step::Record* record :
         document.RecordsOf({"IFCRELDEFINESBYPROPERTIES", "IFCRELOVERRIDESPROPERTIES"})) {
        if (document.Find(record->id) != record) continue;
        const bool isOverriding = document.TypeName(*record) == "IFCRELOVERRIDESPROPERTIES";
        const std::string_view members = step::Argument(document.Text(*record), 4);
        // One set, or several of them in an IfcPropertySetDefinitionSet.
        step::ForEachReference(step::Argument(document.Text(*record), 5), [&](uint64_t id) {
            const auto place = placesOfSets.find(id);
            if (place == placesOfSets.end()) return;
            sets[place->second].relations.push_back(record->id);
            step::ForEachReference(members, [&](uint64_t member) { own[member].push_back(place->second); });
            if (isOverriding) AddOverrides(*record, sets[place->second]);
        });
    }
}

void PropertySets::AddOverrides(const step::Record& relation, Set& overridden) {
    overridden.isFixed = true;
    Set over;
    over.id = relation.id;
    over.name = overridden.name;
    over.overridden = overridden.id;
    step::ForEachReference(step::Argument(document.Text(relation), 4), [&](uint64_t member) {
        overrides[member].push_back(static_cast<uint32_t>(sets.size()));
    });
    sets.push_back(std::move(over));
}

void PropertySets::ReadTypes() {
    std::vector<bool> isType;
    for (const std::string& name : document.TypeNames())
        isType.push_back(IsTypeClass(name));
    for (const step::Record& record : document.Records()) {
        if (!isType[record.type]) continue;
        step::ForEachReference(step::Argument(document.Text(record), 5), [&](uint64_t id) {
            const auto place = placesOfSets.find(id);
            if (place == placesOfSets.end()) return;
            sets[place->second].isFixed = true;
            ofTypes[record.id].push_back(place->second);
        });
    }
    for (const step::Record* record : document.RecordsOf({"IFCRELDEFINESBYTYPE"})) {
        const std::string_view text = document.Text(*record);
        const auto type = step::AsReference(step::Argument(text, 5));
        if (!type) continue;
        step::ForEachReference(step::Argument(text, 4),
                               [&](uint64_t member) { types.emplace(member, *type); });
    }
}

PropertySets::Place PropertySets::Own(uint64_t element, uint32_t set, uint32_t property) {
    const auto found = own.find(element);
    if (found == own.end()) return {};
    Place first;
    for (const uint32_t place : found->second) {
        if (sets[place].name != set) continue;
        if (const uint64_t record = FindFor(element, sets[place], property)) return {&sets[place], record};
        if (!first.set) first.set = &sets[place];
    }
    return first;
}

std::vector<PropertySets::Member> PropertySets::Overrides(uint64_t element, Set& set) {
    std::vector<Member> members;
    const auto found = overrides.find(element);
    if (found == overrides.end()) return members;
    for (const uint32_t place : found->second) {
        if (sets[place].overridden != set.id) continue;
        for (const auto& [name, property] : PropertiesOf(sets[place]))
            members.push_back({FindIn(set, name), property});
    }
    return members;
}

uint64_t PropertySets::FindFor(uint64_t element, Set& set, uint32_t property) {
    const auto found = overrides.find(element);
    if (found != overrides.end()) {
        for (const uint32_t place : found->second) {
            if (sets[place].overridden != set.id) continue;
            if (const uint64_t record = FindIn(sets[place], property)) return record;
        }
    }
    return FindIn(set, property);
}

uint64_t PropertySets::Find(uint64_t element, uint32_t set, uint32_t property) {
    if (const uint64_t found = FindAmong(overrides, element, set, property)) return found;
    if (const uint64_t found = FindAmong(own, element, set, property)) return found;
    const auto type = types.find(element);
    return type == types.end() ? 0 : FindAmong(ofTypes, type->second, set, property);
}

uint64_t PropertySets::FindAmong(const Sets& owners, uint64_t owner, uint32_t set, uint32_t property) {
    const auto found = owners.find(owner);
    if (found == owners.end()) return 0;
    for (const uint32_t place : found->second) {
        if (sets[place].name != set) continue;
        if (const uint64_t record = FindIn(sets[place], property)) return record;
    }
    return 0;
}

uint64_t PropertySets::FindIn(Set& set, uint32_t property) {
    const auto& properties = PropertiesOf(set);
    const auto found = std::ranges::lower_bound(properties, property, {}, &Property::first);
    return found != properties.end() && found->first == property ? found->second : 0;
}

const std::vector<PropertySets::Property>& PropertySets::PropertiesOf(Set& set) {
    if (set.isRead) return set.properties;
    set.isRead = true;
    const std::string_view text = document.Text(*document.Find(set.id));
    step::ForEachReference(step::Argument(text, set.overridden ? 6 : 4), [&](uint64_t id) {
        if (const step::Record* record = document.Find(id))
            set.properties.emplace_back(names.OfArgument(step::Argument(document.Text(*record), 0)), id);
    });
    std::ranges::stable_sort(set.properties, {}, &Property::first);
    return set.properties;
}

}  // namespace workbench
