#include "Workbench/exchange/Subset.hpp"

#include <algorithm>
#include <map>
#include <unordered_map>

#include "Workbench/exchange/Relations.hpp"
#include "Workbench/project/Classes.hpp"
#include "Workbench/project/GlobalId.hpp"
#include "Workbench/step/Arguments.hpp"

namespace workbench {
namespace {

constexpr size_t ownerHistoryAttribute = 1;
constexpr size_t representationAttribute = 6;
constexpr size_t none = static_cast<size_t>(-1);

/// A relationship or description of the document, with both sides resolved to places in its record list.
struct Carrier {
    size_t place = 0;
    const Relation* relation = nullptr;
    size_t anchor = none;  // of a description
    std::vector<size_t> members, related;
    bool taken = false;
};

/// Grows a set of records until all that belongs to it is in.
class Collector {
  public:
    explicit Collector(const Project& project)
        : project(project), document(project.Document()), states(document.Records().size(), State::out) {
        ClassifyTypes();
        FindCarriers();
    }

    void Choose(const Element& element) {
        if (const step::Record* record = document.Find(element.record)) Take(document.IndexOf(*record));
    }

    Subset Collect() {
        for (const step::Record* record : document.RecordsOf({"IFCPROJECT"}))
            Take(document.IndexOf(*record));
        Grow();
        Recontain();
        Grow();
        return Finish();
    }

  private:
    enum class State : uint8_t { out, bare, whole };  // bare: without its shape

    const Project& project;
    const step::Document& document;
    std::vector<State> states;
    std::vector<Carrier> carriers;
    std::vector<bool> isProduct, isSpatial, isRelation;     // by type
    std::map<uint64_t, std::vector<uint64_t>> recontained;  // parts by container

    void ClassifyTypes() {
        for (const std::string& type : document.TypeNames()) {
            isProduct.push_back(IsProductClass(type));
            isSpatial.push_back(IsSpatialClass(type) || type == "IFCPROJECT");
            isRelation.push_back(type.starts_with("IFCREL") && type != "IFCRELAXATION");
        }
    }

    void FindCarriers() {
        std::unordered_map<std::string_view, Carrier> byType;
        for (const Relation& relation : Relations())
            byType[relation.type].relation = &relation;
        for (const Description& description : Descriptions())
            byType[description.type].anchor = description.anchor;
        std::vector<const Carrier*> kinds;
        for (const std::string& type : document.TypeNames()) {
            const auto kind = byType.find(type);
            kinds.push_back(kind == byType.end() ? nullptr : &kind->second);
        }
        for (const step::Record& record : document.Records()) {
            if (!kinds[record.type] || document.Find(record.id) != &record) continue;
            Carrier carrier = *kinds[record.type];
            carrier.place = document.IndexOf(record);
            const std::vector<std::string_view> arguments = step::Arguments(document.Text(record));
            const auto places = [&](size_t n) {
                return n < arguments.size() ? Places(arguments[n]) : Places("$");
            };
            carrier.members = places(carrier.relation ? carrier.relation->members : carrier.anchor);
            if (carrier.relation) carrier.related = places(carrier.relation->related);
            carriers.push_back(std::move(carrier));
        }
    }

    std::vector<size_t> Places(std::string_view argument) const {
        std::vector<size_t> places;
        step::ForEachReference(argument, [&](uint64_t id) {
            if (const step::Record* record = document.Find(id)) places.push_back(document.IndexOf(*record));
        });
        return places;
    }

    const step::Record& RecordAt(size_t place) const { return document.Records()[place]; }
    bool IsIn(size_t place) const { return states[place] != State::out; }
    bool IsSpatial(size_t place) const { return isSpatial[RecordAt(place).type]; }
    bool AnyIn(const std::vector<size_t>& places) const {
        return std::ranges::any_of(places, [this](size_t place) { return IsIn(place); });
    }
    bool AnyWhole(const std::vector<size_t>& places) const {
        return std::ranges::any_of(places, [this](size_t place) { return states[place] == State::whole; });
    }

    /// Takes a record and all that it refers to, except through one attribute. Products and relationships are
    /// never taken in passing: each has a rule of its own.
    void Take(size_t place, State state = State::whole, size_t except = none) {
        if (states[place] >= state) return;
        std::vector<size_t> open;
        const auto enter = [&](size_t next, State as, size_t skipped) {
            states[next] = as;
            const std::string_view text = document.Text(RecordAt(next));
            if (skipped == none) return AddTargets(text, open);
            const std::vector<std::string_view> arguments = step::Arguments(text);
            for (size_t n = 0; n < arguments.size(); ++n) {
                if (n != skipped) AddTargets(arguments[n], open);
            }
        };
        enter(place, state, state == State::bare ? representationAttribute : except);
        while (!open.empty()) {
            const size_t next = open.back();
            open.pop_back();
            const uint32_t type = RecordAt(next).type;
            if (!IsIn(next) && !isProduct[type] && !isRelation[type]) enter(next, State::whole, none);
        }
    }

    void AddTargets(std::string_view text, std::vector<size_t>& open) const {
        step::ForEachReference(text, [&](uint64_t id) {
            if (const step::Record* record = document.Find(id)) open.push_back(document.IndexOf(*record));
        });
    }

    void Grow() {
        for (bool grew = true; grew;) {
            grew = false;
            for (Carrier& carrier : carriers) {
                if (carrier.taken) continue;
                carrier.taken = carrier.relation ? FollowRelation(carrier) : FollowDescription(carrier);
                grew |= carrier.taken;
            }
        }
    }

    bool FollowDescription(const Carrier& carrier) {
        if (!AnyIn(carrier.members)) return false;
        Take(carrier.place, State::whole, carrier.anchor);
        return true;
    }

    bool FollowRelation(const Carrier& carrier) {
        const Relation& relation = *carrier.relation;
        switch (relation.follow) {
            case Follow::bothEnds:
                break;
            case Follow::definition:
                if (!AnyIn(carrier.members) || carrier.related.empty()) return false;
                Take(carrier.place, State::whole, relation.members);
                return true;
            case Follow::part:
                if (AnyWhole(carrier.members)) TakeAll(carrier.related, State::whole);
                break;
            case Follow::container:
                if (AnyIn(carrier.members)) TakeAll(carrier.related, State::bare);
                break;
            case Follow::whole:
                FollowWhole(carrier);
                break;
        }
        if (!AnyIn(carrier.members) || !AnyIn(carrier.related) || !EveryListKeepsSome(carrier)) return false;
        Take(carrier.place, State::whole, relation.members);
        return true;
    }

    void FollowWhole(const Carrier& carrier) {
        for (const size_t whole : carrier.related) {
            if (IsSpatial(whole)) {
                if (AnyIn(carrier.members)) Take(whole, State::bare);
            } else if (states[whole] == State::whole) {
                TakeAll(carrier.members, State::whole);
            }
        }
    }

    void TakeAll(const std::vector<size_t>& places, State state) {
        for (const size_t place : places)
            Take(place, state);
    }

    /// A relationship between products may name further ones, e.g. the bolts that join two beams.
    bool EveryListKeepsSome(const Carrier& carrier) const {
        return std::ranges::all_of(
            step::Arguments(document.Text(RecordAt(carrier.place))), [this](std::string_view argument) {
                const std::vector<size_t> places = Places(argument);
                const bool hasProducts = std::ranges::any_of(
                    places, [this](size_t place) { return isProduct[RecordAt(place).type]; });
                return !argument.starts_with('(') || !hasProducts || AnyIn(places);
            });
    }

    /// Parts whose whole stays behind, and what sits in an opening of an element that does, are put into the
    /// container that they have through it.
    void Recontain() {
        const ProductStructure& structure = project.Structure();
        const auto isIn = [&](std::optional<uint64_t> id) {
            const step::Record* record = id ? document.Find(*id) : nullptr;
            return record && IsIn(document.IndexOf(*record));
        };
        for (const Element& element : project.Elements()) {
            const uint64_t id = element.record;
            if (!isIn(id) || structure.ContainerOf(id) || isIn(structure.WholeOf(id)) ||
                isIn(structure.HostOf(id))) {
                continue;
            }
            const auto container = structure.EffectiveContainerOf(id);
            const step::Record* record = container ? document.Find(*container) : nullptr;
            if (!record) continue;
            Take(document.IndexOf(*record), State::bare);
            recontained[*container].push_back(id);
        }
    }

    Subset Finish() {
        Subset subset;
        const auto keep = [this](uint64_t id) {
            const step::Record* record = document.Find(id);
            return record && IsIn(document.IndexOf(*record));
        };
        for (const step::Record& record : document.Records()) {
            const State state = states[document.IndexOf(record)];
            if (state == State::out) continue;
            subset.records.push_back(&record);
            const std::string_view text = document.Text(record);
            bool dangles = false;
            step::ForEachReference(text, [&](uint64_t id) { dangles |= !keep(id); });
            if (state != State::bare && !dangles) continue;
            std::string changed = step::WithoutReferences(text, keep);
            if (state == State::bare) changed = step::WithArgument(changed, representationAttribute, "$");
            subset.changes.records.emplace(record.id, std::move(changed));
        }
        AddContainments(subset.changes);
        return subset;
    }

    void AddContainments(step::Changes& changes) const {
        uint64_t id = document.HighestId();
        for (const auto& [container, parts] : recontained) {
            const std::string_view text = document.Text(*document.Find(container));
            const auto argument = [](std::string_view of, size_t n) {
                return std::string(step::Argument(of, n));
            };
            std::string members;
            for (const uint64_t part : parts)
                members += (members.empty() ? "#" : ",#") + std::to_string(part);
            const std::string globalId = GlobalIdFromGuid(GuidFromName(argument(text, 0) + "/parts"));
            const std::string history =
                argument(document.Text(*document.Find(parts.front())), ownerHistoryAttribute);
            const std::string own = std::to_string(++id);
            std::string& relation = changes.records[id];
            relation = "#" + own + "=IFCRELCONTAINEDINSPATIALSTRUCTURE('";
            relation.append(globalId).append("',").append(history).append(",$,$,(").append(members);
            relation.append("),#").append(std::to_string(container)).append(");");
        }
    }
};

}  // namespace

Subset SubsetOf(const Project& project, std::span<const API_Guid> elements) {
    Collector collector(project);
    for (const API_Guid& guid : elements) {
        if (const Element* element = project.FindByGuid(guid)) collector.Choose(*element);
    }
    return collector.Collect();
}

}  // namespace workbench
