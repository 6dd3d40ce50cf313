#include "Workbench/exchange/mapping/SetChanges.hpp"

#include <algorithm>

#include "Workbench/project/GlobalId.hpp"
#include "Workbench/step/Arguments.hpp"

namespace workbench {
namespace {

constexpr size_t ownerHistoryAttribute = 1;
constexpr size_t membersAttribute = 4;  // of a set its properties, of a relationship its elements
constexpr size_t setAttribute = 5;      // of a relationship

std::string ReferenceList(const std::vector<uint64_t>& ids) {
    std::string list;
    for (const uint64_t id : ids)
        list.append(list.empty() ? "(#" : ",#").append(std::to_string(id));
    return list.empty() ? "()" : list + ')';
}

/// "TYPE(...)" of "#12=TYPE(...);".
std::string WithoutId(std::string_view record) {
    constexpr std::string_view begin = "#0=", end = ";";
    std::string text;
    step::AppendRenumbered(text, record, 0, [](uint64_t id) { return id; });
    return text.substr(begin.size(), text.size() - begin.size() - end.size());
}

void AppendBytes(std::string& key, uint64_t number) {
    key.append(reinterpret_cast<const char*>(&number), sizeof number);
}

}  // namespace

SetChanges::SetChanges(const step::Document& document) : document(document), added(document.HighestId()) {}

std::string_view SetChanges::Text(uint64_t id) const {
    const auto changed = changes.records.find(id);
    if (changed != changes.records.end()) return changed->second;
    const step::Record* record = document.Find(id);
    return record ? document.Text(*record) : std::string_view();
}

void SetChanges::Give(uint64_t element, const PropertySets::Set* existing, std::string_view encodedName,
                      const std::vector<Member>& members) {
    std::string key(encodedName);
    AppendBytes(key, existing ? existing->id : 0);
    for (const Member& member : members)
        AppendBytes(key, member.property);
    const auto [place, isNew] = placesOfGroups.try_emplace(std::move(key), groups.size());
    if (isNew)
        groups.push_back({.existing = existing,
                          .encodedName = std::string(encodedName),
                          .members = members,
                          .elements = {}});
    groups[place->second].elements.push_back(element);
}

step::Changes SetChanges::Finish() {
    std::vector<std::vector<const Group*>> bySet;
    std::unordered_map<uint64_t, size_t> places;
    for (const Group& group : groups) {
        if (!group.existing) continue;
        const auto [place, isNew] = places.try_emplace(group.existing->id, bySet.size());
        if (isNew) bySet.emplace_back();
        bySet[place->second].push_back(&group);
    }
    for (const std::vector<const Group*>& groupsOfSet : bySet)
        Extend(groupsOfSet);
    for (const Group& group : groups) {
        if (!group.existing) Create(group);
    }
    changes.added = added.Take();
    return std::move(changes);
}

std::string SetChanges::NewGlobalId(uint64_t element, std::string_view what) {
    if (!globalIds) globalIds.emplace(document);
    std::string seed(step::Argument(Text(element), 0));
    seed.append("/").append(what);
    return '\'' + globalIds->Take(GlobalIdFromGuid(GuidFromName(seed))) + '\'';
}

std::string SetChanges::OwnerHistoryOf(uint64_t element) const {
    return std::string(step::Argument(Text(element), ownerHistoryAttribute));
}

void SetChanges::Create(const Group& group) {
    const uint64_t first = group.elements.front();
    const uint64_t set =
        added.Add("IFCPROPERTYSET(" + NewGlobalId(first, group.encodedName) + ',' + OwnerHistoryOf(first) +
                  ',' + group.encodedName + ",$," + ExtendedList("()", group.members) + ')');
    Relate(group.elements, set);
}

/// The first group keeps the set itself when it is nobody else's; all others get copies of it.
void SetChanges::Extend(const std::vector<const Group*>& groupsOfSet) {
    const PropertySets::Set& set = *groupsOfSet.front()->existing;
    std::unordered_map<uint64_t, size_t> leaving;  // elements, by their group
    for (size_t at = 0; at < groupsOfSet.size(); ++at) {
        for (const uint64_t element : groupsOfSet[at]->elements)
            leaving.emplace(element, at);
    }
    const bool isOthersToo =
        set.isFixed || std::ranges::any_of(set.relations, [&](uint64_t relation) {
            const std::vector<uint64_t> members =
                step::References(step::Argument(Text(relation), membersAttribute));
            return !std::ranges::all_of(members, [&](uint64_t member) { return leaving.contains(member); });
        });
    if (!isOthersToo) std::erase_if(leaving, [](const auto& entry) { return entry.second == 0; });
    for (const uint64_t relation : set.relations)
        Withdraw(relation, set.id, leaving);

    const std::string text(Text(set.id));
    const std::string_view list = step::Argument(text, membersAttribute);
    for (size_t at = 0; at < groupsOfSet.size(); ++at) {
        const Group& group = *groupsOfSet[at];
        std::string extended = step::WithArgument(text, membersAttribute, ExtendedList(list, group.members));
        if (at == 0 && !isOthersToo) {
            changes.records[set.id] = std::move(extended);
            continue;
        }
        extended =
            step::WithArgument(extended, 0, NewGlobalId(group.elements.front(), step::Argument(text, 0)));
        Relate(group.elements, added.Add(WithoutId(extended)));
    }
}

void SetChanges::Relate(const std::vector<uint64_t>& elements, uint64_t set) {
    const std::string target = '#' + std::to_string(set);
    added.Add("IFCRELDEFINESBYPROPERTIES(" + NewGlobalId(elements.front(), target) + ',' +
              OwnerHistoryOf(elements.front()) + ",$,$," + ReferenceList(elements) + ',' + target + ')');
}

/// Takes the set from those who leave it. A relationship may give several sets at once: it then loses this
/// one, and who stays gets it through a relationship of its own.
void SetChanges::Withdraw(uint64_t relation, uint64_t set,
                          const std::unordered_map<uint64_t, size_t>& leaving) {
    const std::string text(Text(relation));
    std::vector<uint64_t> staying = step::References(step::Argument(text, membersAttribute));
    if (std::erase_if(staying, [&](uint64_t member) { return leaving.contains(member); }) == 0) return;
    const auto isOther = [set](uint64_t id) { return id != set; };
    const std::string_view given = step::Argument(text, setAttribute);
    if (std::ranges::any_of(step::References(given), isOther)) {
        changes.records[relation] =
            step::WithArgument(text, setAttribute, step::WithoutReferences(given, isOther));
        if (!staying.empty()) Relate(staying, set);
    } else if (staying.empty()) {
        changes.records.erase(relation);
        changes.removed.insert(relation);
    } else {
        changes.records[relation] = step::WithArgument(text, membersAttribute, ReferenceList(staying));
    }
}

std::string SetChanges::ExtendedList(std::string_view list, const std::vector<Member>& members) {
    std::vector<uint64_t> ids = step::References(list);
    for (const Member& member : members) {
        const auto replaced = std::ranges::find(ids, member.replaced);
        if (member.replaced != 0 && replaced != ids.end()) {
            *replaced = member.property;
        } else {
            ids.push_back(member.property);
        }
    }
    return ReferenceList(ids);
}

}  // namespace workbench
