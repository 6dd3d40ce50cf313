#include "Workbench/exchange/merge/Import.hpp"

#include <algorithm>

#include "Workbench/exchange/Relations.hpp"
#include "Workbench/exchange/merge/Conversion.hpp"
#include "Workbench/project/Classes.hpp"
#include "Workbench/step/Arguments.hpp"
#include "Workbench/step/Text.hpp"

namespace workbench {
namespace {

std::vector<API_Guid> GuidsOf(std::span<const NewElement* const> elements) {
    std::vector<API_Guid> guids;
    for (const NewElement* element : elements)
        guids.push_back(element->like->guid);
    return guids;
}

template <class Rows>
auto FindRow(const Rows& rows, std::string_view type) {
    const auto row = std::ranges::find(rows, type, &Rows::value_type::type);
    return row == rows.end() ? nullptr : &*row;
}

}  // namespace

MergeTarget::MergeTarget(const Project& base)
    : base(base),
      places(PlacesOf(base)),
      units(UnitsOf(base)),
      globalIds(base.Document()),
      nextId(base.Document().HighestId() + 1) {}

Import::Import(MergeTarget& target, const Project& source, std::span<const NewElement* const> elements,
               uint64_t firstId)
    : target(target),
      source(source),
      document(source.Document()),
      firstId(firstId),
      places(PlacesOf(source)),
      draft(source.Document(), SubsetOf(source, GuidsOf(elements))) {
    const std::optional<API_Tranmat> move = MoveBetween(source, target.base);
    lift = move ? move->tmx[11] : 0;
    map = MapPlaces(target.places, source, places, lift);
    for (const NewElement* element : elements)
        globalIds.emplace(element->like->record, element->globalId);

    std::vector<bool> isProduct;
    for (const std::string& type : document.TypeNames()) {
        isProduct.push_back(IsProductClass(type));
        isRooted.push_back(IsRootedClass(type));
    }
    for (const step::Record* record : draft.Records()) {
        if (isProduct[record->type] && !IsReplaced(record->id)) products.push_back(record->id);
    }
    Conversion(UnitsOf(source), target.units, move).Apply(draft, products);
    if (lift != 0) LiftStoreys();

    kept.resize(document.Records().size() + (draft.Highest() - draft.HighestOfDocument()));
    firstNewId = target.nextId;
    target.nextId += draft.Highest() - draft.HighestOfDocument();
    FindRoots();
    KeepDescriptions();
}

void Import::LiftStoreys() {
    for (const SpatialPlace& place : places.spatial) {
        if (place.type != "IFCBUILDINGSTOREY" || IsReplaced(place.record)) continue;
        const double elevation = (place.elevation + lift) / target.units.metres;
        draft.SetArgument(place.record, 9, step::EncodeReal(elevation));
    }
}

std::size_t Import::PlaceOf(uint64_t id) const {
    if (const step::Record* record = document.Find(id)) return document.IndexOf(*record);
    return document.Records().size() + (id - draft.HighestOfDocument() - 1);
}

bool Import::IsReplaced(uint64_t id) const {
    return map.inTarget.contains(id) || map.inSource.contains(id);
}

uint64_t Import::IdOf(uint64_t id) const {
    if (const auto found = map.inTarget.find(id); found != map.inTarget.end()) return found->second;
    if (const auto found = map.inSource.find(id); found != map.inSource.end()) return IdOf(found->second);
    if (const step::Record* record = document.Find(id)) return firstId + document.IndexOf(*record);
    return firstNewId + (id - draft.HighestOfDocument() - 1);
}

// Products and the relations among what comes; everything else comes because one of them needs it.
void Import::FindRoots() {
    std::vector<const Relation*> relations;
    for (const std::string& type : document.TypeNames())
        relations.push_back(FindRow(Relations(), type));
    for (const uint64_t product : products)
        Keep(product);
    for (const step::Record* record : draft.Records()) {
        const Relation* relation = relations[record->type];
        if (relation && TrimRelation(record->id, *relation)) Keep(record->id);
    }
    for (uint64_t id = draft.HighestOfDocument() + 1; id <= draft.Highest(); ++id) {
        const Relation* relation = FindRow(Relations(), draft.TypeOf(id));
        if (relation && TrimRelation(id, *relation)) Keep(id);
    }
}

/// Takes from a relation what stays behind: replaced members, and the relation when nothing is left. The
/// place that a product is in may be replaced by any; other relations hold between things of one kind.
bool Import::TrimRelation(uint64_t id, const Relation& relation) {
    const std::string_view members = draft.Argument(id, relation.members);
    const std::vector<uint64_t> all = step::References(members);
    const auto stays = [this](uint64_t member) { return draft.Contains(member) && !IsReplaced(member); };
    const auto count = std::ranges::count_if(all, stays);
    if (count == 0) return false;
    if (static_cast<size_t>(count) < all.size())
        draft.SetArgument(id, relation.members, step::WithoutReferences(members, stays));
    if (relation.follow == Follow::container || relation.follow == Follow::whole) return true;
    for (const uint64_t related : step::References(draft.Argument(id, relation.related))) {
        if (map.inSource.contains(related)) return false;
        const auto found = map.inTarget.find(related);
        if (found == map.inTarget.end()) continue;
        const step::Record* other = target.base.Document().Find(found->second);
        if (!other || target.base.Document().TypeName(*other) != draft.TypeOf(related)) return false;
    }
    return true;
}

void Import::Keep(uint64_t id) {
    std::vector<uint64_t> open = {id};
    while (!open.empty()) {
        const uint64_t next = open.back();
        open.pop_back();
        if (IsReplaced(next)) {
            if (const auto found = map.inSource.find(next); found != map.inSource.end())
                open.push_back(found->second);
            continue;
        }
        if (!draft.Contains(next) || IsKept(next)) continue;
        kept[PlaceOf(next)] = true;
        step::ForEachReference(draft.Text(next), [&](uint64_t reference) { open.push_back(reference); });
    }
}

void Import::KeepDescriptions() {
    std::vector<const Description*> kinds;
    for (const std::string& type : document.TypeNames())
        kinds.push_back(FindRow(Descriptions(), type));
    std::vector<const step::Record*> waiting;
    for (const step::Record* record : draft.Records())
        if (kinds[record->type] && !IsReplaced(record->id)) waiting.push_back(record);
    for (bool grew = true; grew;) {
        grew = false;
        std::erase_if(waiting, [&](const step::Record* record) {
            bool anchored = IsKept(record->id);
            const std::string_view anchor = draft.Argument(record->id, kinds[record->type]->anchor);
            step::ForEachReference(anchor, [&](uint64_t id) {
                anchored |= draft.Contains(id) && !IsReplaced(id) && IsKept(id);
            });
            if (!anchored) return false;
            // Of what it describes only what comes anyway.
            const auto comes = [&](uint64_t id) {
                return draft.Contains(id) && (IsReplaced(id) || IsKept(id));
            };
            const std::string trimmed = step::WithoutReferences(anchor, comes);
            if (trimmed != anchor) draft.SetArgument(record->id, kinds[record->type]->anchor, trimmed);
            Keep(record->id);
            return grew = true;
        });
    }
}

void Import::Write(std::string& out) {
    for (const step::Record* record : draft.Records())
        if (!IsReplaced(record->id) && IsKept(record->id)) WriteRecord(out, record->id);
    for (uint64_t id = draft.HighestOfDocument() + 1; id <= draft.Highest(); ++id)
        if (draft.Contains(id) && IsKept(id)) WriteRecord(out, id);
    TellNewPlaces();
}

void Import::WriteRecord(std::string& out, uint64_t id) {
    std::string_view text = draft.Text(id);
    std::string changed;
    const step::Record* record = document.Find(id);
    if (record ? isRooted[record->type] : IsRootedClass(draft.TypeOf(id))) {
        const std::string old = step::AsText(step::Argument(text, 0)).value_or("");
        const auto decided = globalIds.find(id);
        const std::string own = decided != globalIds.end() ? decided->second : target.globalIds.Take(old);
        if (own != old) {
            changed = step::WithArgument(text, 0, "'" + own + "'");
            text = changed;
        }
    }
    step::AppendRenumbered(out, text, IdOf(id), [this](uint64_t other) { return IdOf(other); });
    out += '\n';
}

void Import::TellNewPlaces() {
    for (SpatialPlace& place : places.spatial) {
        if (!draft.Contains(place.record) || IsReplaced(place.record) || !IsKept(place.record)) continue;
        place.record = IdOf(place.record);
        place.elevation += lift;
        target.places.spatial.push_back(place);
    }
    for (const Context& context : places.contexts) {
        if (!draft.Contains(context.record) || IsReplaced(context.record) || !IsKept(context.record))
            continue;
        Context added = context;
        added.record = IdOf(context.record);
        if (added.parent != 0) added.parent = IdOf(added.parent);
        target.places.contexts.push_back(added);
    }
}

}  // namespace workbench
