#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "Workbench/step/Document.hpp"

namespace workbench {

/// Texts as numbers, the same for the same text.
class Names {
  public:
    uint32_t Of(const std::string& text);
    /// Of a string as it stands in a document that outlives this.
    uint32_t OfArgument(std::string_view argument);

  private:
    std::unordered_map<std::string, uint32_t> byText;
    std::unordered_map<std::string_view, uint32_t> byArgument;
};

/// The property sets of a document and who has them. All are told by record id, names by number.
class PropertySets {
  public:
    PropertySets(const step::Document& document, Names& names);

    struct Set {
        uint64_t id = 0;
        uint32_t name = 0;
        bool isOfType = false;            // elements may have it through their type
        std::vector<uint64_t> relations;  // that give it to elements
        bool isRead = false;
        std::vector<std::pair<uint32_t, uint64_t>> properties;  // by name, once it is read
    };

    /// The element's own set of that name; null when it has none.
    Set* Own(uint64_t element, uint32_t name);
    /// The property in that set of the element, else of its type; 0 when neither has it.
    uint64_t Find(uint64_t element, uint32_t set, uint32_t property);
    /// The property in the set; 0 when it has none of that name.
    uint64_t FindIn(Set& set, uint32_t property);

  private:
    using Sets = std::unordered_map<uint64_t, std::vector<uint32_t>>;

    const step::Document& document;
    Names& names;
    std::vector<Set> sets;
    std::unordered_map<uint64_t, uint32_t> placesOfSets;
    Sets own, ofTypes;  // places of sets by element and by type
    std::unordered_map<uint64_t, uint64_t> types;

    void ReadRelations();
    void ReadTypes();
    uint64_t FindAmong(const Sets& owners, uint64_t owner, uint32_t set, uint32_t property);
};

}  // namespace workbench
