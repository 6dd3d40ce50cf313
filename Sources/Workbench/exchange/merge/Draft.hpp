#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "Workbench/exchange/Subset.hpp"

namespace workbench {

/// The records of a subset while they are prepared for another project: some with another text, some new.
/// All keep the ids of their document until the end.
class Draft {
  public:
    Draft(const step::Document& document, Subset subset);

    const step::Document& Document() const { return document; }
    /// In file order, without the new ones.
    const std::vector<const step::Record*>& Records() const { return records; }
    /// Of the document or new; empty for what is neither.
    std::string_view Text(uint64_t id) const;
    /// In upper case.
    std::string TypeOf(uint64_t id) const;
    bool Contains(uint64_t id) const { return !Text(id).empty(); }

    std::string_view Argument(uint64_t id, size_t n) const;
    void SetArgument(uint64_t id, size_t n, std::string_view value);
    void SetText(uint64_t id, std::string text) { changed[id] = std::move(text); }
    /// A record "TYPE(...)" that the document does not have; its id.
    uint64_t Add(std::string_view typeAndArguments);

    /// Ids of the new records are above this one.
    uint64_t HighestOfDocument() const { return document.HighestId(); }
    uint64_t Highest() const { return highest; }

  private:
    const step::Document& document;
    std::vector<const step::Record*> records;
    std::map<uint64_t, std::string> changed;
    uint64_t highest;
};

/// "#12".
inline std::string Reference(uint64_t id) {
    return '#' + std::to_string(id);
}

}  // namespace workbench
