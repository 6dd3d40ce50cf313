#include "Workbench/exchange/mapping/PropertySets.hpp"

#include <algorithm>

#include "Workbench/step/Arguments.hpp"

namespace workbench {

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
    for (const step::Record* record : document.RecordsOf({"IFCRELDEFINESBYPROPERTIES"})) {
        if (document.Find(record->id) != record) continue;
        const std::string_view members = step::Argument(document.Text(*record), 4);
        // One set, or several of them in an IfcPropertySetDefinitionSet.
        step::ForEachReference(step::Argument(document.Text(*record), 5), [&](uint64_t id) {
            const auto place = placesOfSets.find(id);
            if (place == placesOfSets.end()) return;
            sets[place->second].relations.push_back(record->id);
            step::ForEachReference(members, [&](uint64_t member) { own[member].push_back(place->second); });
        });
    }
}

void PropertySets::ReadTypes() {
    std::vector<bool> isType;
    for (const std::string& name : document.TypeNames())
        isType.push_back(name.ends_with("TYPE") || name.ends_with("STYLE"));
    for (const step::Record& record : document.Records()) {
        if (!isType[record.type]) continue;
        step::ForEachReference(step::Argument(document.Text(record), 5), [&](uint64_t id) {
            const auto place = placesOfSets.find(id);
            if (place == placesOfSets.end()) return;
            sets[place->second].isOfType = true;
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

PropertySets::Set* PropertySets::Own(uint64_t element, uint32_t name) {
    const auto found = own.find(element);
    if (found == own.end()) return nullptr;
    for (const uint32_t place : found->second) {
        if (sets[place].name == name) return &sets[place];
    }
    return nullptr;
}

uint64_t PropertySets::Find(uint64_t element, uint32_t set, uint32_t property) {
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
    if (!set.isRead) {
        set.isRead = true;
        step::ForEachReference(step::Argument(document.Text(*document.Find(set.id)), 4), [&](uint64_t id) {
            if (const step::Record* record = document.Find(id))
                set.properties.emplace_back(names.OfArgument(step::Argument(document.Text(*record), 0)), id);
        });
        std::ranges::stable_sort(set.properties, {}, &std::pair<uint32_t, uint64_t>::first);
    }
    const auto found =
        std::ranges::lower_bound(set.properties, property, {}, &std::pair<uint32_t, uint64_t>::first);
    return found != set.properties.end() && found->first == property ? found->second : 0;
}

}  // namespace workbench
