#include "Workbench/exchange/PropertyMapping.hpp"

#include <map>
#include <set>

#include "Workbench/exchange/mapping/MappingTargets.hpp"
#include "Workbench/exchange/mapping/PropertySets.hpp"
#include "Workbench/exchange/mapping/PropertyValue.hpp"
#include "Workbench/exchange/mapping/SetChanges.hpp"
#include "Workbench/step/Arguments.hpp"
#include "Workbench/step/Lexer.hpp"

namespace workbench {
namespace {

constexpr size_t progressStep = 4096;  // records and mapped properties between two calls of progress

/// Goes through the elements and finds what each is to get.
class Mapper {
  public:
    Mapper(const step::Document& document, std::span<const MappedSet> mapping, const Progress& progress)
        : document(document),
          progress(progress),
          targets(document, mapping, names),
          sets(document, names),
          changes(document) {}

    /// False when the progress function stopped it.
    bool Run() {
        const std::span<const step::Record> records = document.Records();
        for (const step::Record& record : records) {
            fraction = static_cast<double>(document.IndexOf(record)) / static_cast<double>(records.size());
            if (!GoOn()) return false;
            const std::span<const TargetSet> wanted = targets.Of(record.type);
            if (wanted.empty() || document.Find(record.id) != &record) continue;
            for (const TargetSet& target : wanted) {
                if (!Map(record.id, target)) return false;
            }
        }
        return true;
    }

    MappedChanges Finish() { return {.changes = changes.Finish(), .counts = counts}; }

  private:
    const step::Document& document;
    const Progress& progress;
    Names names;
    MappingTargets targets;
    PropertySets sets;
    SetChanges changes;
    MappingCounts counts;
    size_t steps = 0;
    double fraction = 0;

    bool GoOn() { return steps++ % progressStep != 0 || !progress || progress(fraction); }

    bool Map(uint64_t element, const TargetSet& target) {
        // Of one name an element may have several sets.
        std::map<PropertySets::Set*, std::vector<SetChanges::Member>> members;
        std::set<uint32_t> given;  // names, of those that several entries give
        for (const TargetProperty& property : target.properties) {
            if (!GoOn()) return false;
            if (property.isRepeated && given.contains(property.name)) continue;
            const step::Record* source = document.Find(sets.Find(element, property.group, property.property));
            if (!source) continue;
            const PropertySets::Place place = sets.Own(element, target.name, property.name);
            const std::optional<std::string> text = TextFor(*source, place.property, property);
            if (!text) continue;
            if (property.isRepeated) given.insert(property.name);
            if (place.property == 0 || !IsRecord(place.property, *text))
                members[place.set].push_back({place.property, changes.Property(*text)});
        }
        for (const auto& [set, added] : members) {
            std::vector<SetChanges::Member> all;
            if (set && set->isFixed) all = sets.Overrides(element, *set);
            all.insert(all.end(), added.begin(), added.end());
            changes.Give(element, set, target.encodedName, all);
        }
        return true;
    }

    /// The mapped property as a record without its id; nothing when its value does not fit. It keeps the
    /// description of the one it replaces.
    std::optional<std::string> TextFor(const step::Record& source, uint64_t replaced,
                                       const TargetProperty& property) {
        auto value = ReadPropertyValue(document.TypeName(source), document.Text(source));
        if (!value) return std::nullopt;
        if (const step::Record* old = document.Find(replaced)) {
            const std::string_view description = step::Argument(document.Text(*old), 1);
            if (!step::IsUnset(description)) value->description = description;
        }
        std::optional<std::string> text = WritePropertyValue(*value, property.encodedName, property.form);
        ++(text ? counts.written : counts.leftOut);
        return text;
    }

    bool IsRecord(uint64_t id, std::string_view text) const {
        const std::string_view record = document.Text(*document.Find(id));
        const char* end = record.data() + record.size() - 1;
        const char* type = step::SkipBlanks(record.data() + record.find('=') + 1, end);
        return std::string_view(type, end) == text;
    }
};

}  // namespace

std::optional<MappedChanges> MapProperties(const step::Document& document, std::span<const MappedSet> mapping,
                                           const Progress& progress) {
    Mapper mapper(document, mapping, progress);
    if (!mapper.Run()) return std::nullopt;
    return mapper.Finish();
}

}  // namespace workbench
