#pragma once

#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "Workbench/exchange/UsedGlobalIds.hpp"
#include "Workbench/exchange/mapping/NewRecords.hpp"
#include "Workbench/exchange/mapping/PropertySets.hpp"
#include "Workbench/step/Writer.hpp"

namespace workbench {

/// Gathers which elements get which properties into which set, and changes a document so: elements that get
/// the same share their records, a set that others have too is copied for those that get something.
class SetChanges {
  public:
    explicit SetChanges(const step::Document& document);

    using Member = PropertySets::Member;

    /// The id of a new record "IFCPROPERTYSINGLEVALUE(...)", the same for the same text.
    uint64_t Property(std::string_view text) { return added.AddOnce(text); }
    /// Puts these into the element's own set, or into a new one of that name when it has none. An element may
    /// get something in several sets, but into each only once.
    void Give(uint64_t element, const PropertySets::Set* existing, std::string_view encodedName,
              const std::vector<Member>& members);
    step::Changes Finish();

  private:
    /// Elements that get the same.
    struct Group {
        const PropertySets::Set* existing = nullptr;
        std::string encodedName;
        std::vector<Member> members;
        std::vector<uint64_t> elements;
    };

    const step::Document& document;
    step::Changes changes;
    NewRecords added;
    std::vector<Group> groups;
    std::unordered_map<std::string, size_t> placesOfGroups;
    std::optional<UsedGlobalIds> globalIds;

    std::string_view Text(uint64_t id) const;
    /// In apostrophes; always the same for the same document and changes.
    std::string NewGlobalId(uint64_t element, std::string_view what);
    std::string OwnerHistoryOf(uint64_t element) const;
    void Create(const Group& group);
    void Extend(const std::vector<const Group*>& groupsOfSet);
    void Relate(const std::vector<uint64_t>& elements, uint64_t set);
    void Withdraw(uint64_t relation, uint64_t set, const std::unordered_map<uint64_t, size_t>& leaving);
    static std::string ExtendedList(std::string_view list, const std::vector<Member>& members);
};

}  // namespace workbench
