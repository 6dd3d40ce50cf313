#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <unordered_map>
#include <vector>

#include "Workbench/exchange/Merge.hpp"
#include "Workbench/exchange/UsedGlobalIds.hpp"
#include "Workbench/exchange/merge/Draft.hpp"
#include "Workbench/exchange/merge/ModelUnits.hpp"
#include "Workbench/exchange/merge/Places.hpp"

namespace workbench {

/// The project that a merge writes into: the base, growing by what has come so far.
struct MergeTarget {
    explicit MergeTarget(const Project& base);

    const Project& base;
    Places places;
    ModelUnits units;
    UsedGlobalIds globalIds;
    uint64_t nextId;  // free, as all above it
};

/// Elements of one source on their way into the target.
class Import {
  public:
    /// The record at place n of the source's list gets the id `firstId` + n.
    Import(MergeTarget& target, const Project& source, std::span<const NewElement* const> elements,
           uint64_t firstId);

    /// Appends their records to the data section's text.
    void Write(std::string& out);
    /// The new id of a record of the source.
    uint64_t IdOf(uint64_t id) const;

  private:
    void LiftStoreys();
    void FindRoots();
    bool TrimRelation(uint64_t id, const struct Relation& relation);
    void Keep(uint64_t id);
    void KeepDescriptions();
    bool IsReplaced(uint64_t id) const;
    bool IsKept(uint64_t id) const { return kept.at(PlaceOf(id)); }
    std::size_t PlaceOf(uint64_t id) const;
    void WriteRecord(std::string& out, uint64_t id);
    void TellNewPlaces();

    MergeTarget& target;
    const Project& source;
    const step::Document& document;
    uint64_t firstId;
    uint64_t firstNewId = 0;  // of the draft's new records
    Places places;
    PlaceMap map;
    Draft draft;
    double lift = 0;  // of elevations, metres
    std::vector<uint64_t> products;
    std::vector<bool> isRooted;  // by type
    std::vector<bool> kept;      // by place in the document, then the draft's new records
    std::unordered_map<uint64_t, std::string> globalIds;  // decided for elements
};

}  // namespace workbench
