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

    using Property = std::pair<uint32_t, uint64_t>;  // name and id
    struct Set {
        uint64_t id = 0;
        uint32_t name = 0;
        bool isFixed = false;             // elements have it through their type, or override some of it
        uint64_t overridden = 0;          // of what an IfcRelOverridesProperties puts over a set: that set
        std::vector<uint64_t> relations;  // that give it to elements
        bool isRead = false;
        std::vector<Property> properties;  // by name, once it is read
    };
    /// A property in an element's set, 0 when it has none of that name.
    struct Place {
        Set* set = nullptr;
        uint64_t property = 0;
    };
    /// What a set is to hold, in place of another property or, with 0, besides the others.
    struct Member {
        uint64_t replaced = 0;
        uint64_t property = 0;
    };

    /// Where the element's own sets of that name have the property; else the first of these sets, null when
    /// there is none.
    Place Own(uint64_t element, uint32_t set, uint32_t property);
    /// What makes of the set what the element has when it overrides some of it.
    std::vector<Member> Overrides(uint64_t element, Set& set);
    /// The property in that set of the element, else of its type; 0 when neither has it.
    uint64_t Find(uint64_t element, uint32_t set, uint32_t property);

  private:
    using Sets = std::unordered_map<uint64_t, std::vector<uint32_t>>;

    const step::Document& document;
    Names& names;
    std::vector<Set> sets;
    std::unordered_map<uint64_t, uint32_t> placesOfSets;
    Sets own, ofTypes, overrides;  // places of sets by element, by type and by element
    std::unordered_map<uint64_t, uint64_t> types;

    void ReadRelations();
    void AddOverrides(const step::Record& relation, Set& overridden);
    void ReadTypes();
    uint64_t FindIn(Set& set, uint32_t property);
    uint64_t FindFor(uint64_t element, Set& set, uint32_t property);
    const std::vector<Property>& PropertiesOf(Set& set);
    uint64_t FindAmong(const Sets& owners, uint64_t owner, uint32_t set, uint32_t property);
};

}  // namespace workbench
