#include "Workbench/exchange/PropertyMapping.hpp"

#include <set>

#include "Workbench/exchange/mapping/Plan.hpp"
#include "Workbench/exchange/mapping/PropertySets.hpp"
#include "Workbench/exchange/mapping/PropertyValue.hpp"
#include "Workbench/exchange/mapping/SetChanges.hpp"
#include "Workbench/step/Lexer.hpp"

namespace workbench {
namespace {

constexpr size_t progressStep = 4096;  // records between two calls of the progress function

/// Goes through the elements and finds what each is to get.
class Mapper {
  public:
    Mapper(const step::Document& document, std::span<const MappedSet> mapping)
        : document(document), plan(document, mapping, names), sets(document, names), changes(document) {}

    /// False when the progress function stopped it.
    bool Run(const Progress& progress) {
        const std::span<const step::Record> records = document.Records();
        for (size_t at = 0; at < records.size(); ++at) {
            if (at % progressStep == 0 && progress &&
                !progress(static_cast<double>(at) / static_cast<double>(records.size()))) {
                return false;
            }
            const step::Record& record = records[at];
            const std::span<const TargetSet> targets = plan.TargetsOf(record.type);
            if (targets.empty() || document.Find(record.id) != &record) continue;
            for (const TargetSet& target : targets)
                Map(record.id, target);
        }
        return true;
    }

    MappedChanges Finish() { return {.changes = changes.Finish(), .counts = counts}; }

  private:
    const step::Document& document;
    Names names;
    Plan plan;
    PropertySets sets;
    SetChanges changes;
    MappingCounts counts;

    void Map(uint64_t element, const TargetSet& target) {
        PropertySets::Set* existing = sets.Own(element, target.name);
        std::vector<SetChanges::Member> members;
        std::set<uint32_t> given;  // names, of those that several entries give
        for (const TargetProperty& property : target.properties) {
            if (property.isRepeated && given.contains(property.name)) continue;
            const std::optional<std::string> text = TextFor(element, property);
            if (!text) continue;
            if (property.isRepeated) given.insert(property.name);
            const uint64_t old = existing ? sets.FindIn(*existing, property.name) : 0;
            if (old == 0 || !IsRecord(old, *text)) members.push_back({old, changes.Property(*text)});
        }
        if (!members.empty()) changes.Give(element, existing, target.encodedName, members);
    }

    /// The mapped property as a record without its id; nothing when the element does not get it.
    std::optional<std::string> TextFor(uint64_t element, const TargetProperty& property) {
        const step::Record* source = document.Find(sets.Find(element, property.group, property.property));
        if (!source) return std::nullopt;
        const auto value = ReadPropertyValue(document.TypeName(*source), document.Text(*source));
        if (!value) return std::nullopt;
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
    Mapper mapper(document, mapping);
    if (!mapper.Run(progress)) return std::nullopt;
    return mapper.Finish();
}

}  // namespace workbench
