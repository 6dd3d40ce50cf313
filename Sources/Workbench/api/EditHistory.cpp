#include "Workbench/api/EditHistory.hpp"

#include <algorithm>

namespace workbench {

void EditHistory::Reset(std::shared_ptr<const Project> project) {
    *this = EditHistory();
    base = std::move(project);
}

void EditHistory::Begin(std::string name) {
    open = std::move(name);
}

void EditHistory::End(bool succeeded) {
    const std::size_t begin = EntriesAt(position);
    if (!succeeded && position == steps.size()) Truncate(begin);
    if (position == steps.size() && entries.size() > begin) {
        steps.push_back({*std::move(open), entries.size()});
        ++position;
    }
    open.reset();
}

void EditHistory::ForgetUndone() {
    if (position == steps.size()) return;
    Truncate(EntriesAt(position));
    steps.resize(position);
    if (savedAt && *savedAt > position) savedAt.reset();
}

void EditHistory::Truncate(std::size_t count) {
    if (count == entries.size()) return;
    entries.resize(count);
    if (madeOf && *madeOf > count) madeOf.reset();
    globalIds.reset();  // what was noted of the entries is made anew
}

void EditHistory::Prepare() {
    ForgetUndone();
    if (globalIds) return;
    globalIds.emplace(base->Document());
    copies.clear();
    for (std::size_t entry = 0; entry < entries.size(); ++entry) {
        globalIds->Take(entries[entry].element.globalId);
        Note(entry);
    }
}

void EditHistory::Note(std::size_t entry) {
    Copies& known = copies[entries[entry].element.like];
    const How how = entries[entry].how;
    if (how != How::adopted) known.entries.push_back(entry);
    known.lastIsAdoptable = how == How::cameAlong;
}

EditHistory::Created EditHistory::Create(const std::shared_ptr<const Project>& source,
                                         const API_Guid& element) {
    if (!open) return {.refusal = Refusal::noStep, .guid = APINULLGuid};
    const Element* like = source ? source->FindByGuid(element) : nullptr;
    if (!like) return {.refusal = Refusal::noElement, .guid = APINULLGuid};
    if (!CanMerge(*base, *source)) return {.refusal = Refusal::otherSchema, .guid = APINULLGuid};
    Prepare();
    if (const auto known = copies.find(like); known != copies.end() && known->second.lastIsAdoptable) {
        Entry adopted = entries[known->second.entries.back()];
        adopted.how = How::adopted;
        entries.push_back(adopted);
        Note(entries.size() - 1);
        return {.refusal = Refusal::none, .guid = adopted.guid};
    }
    return {.refusal = Refusal::none, .guid = Add(source, *like, How::created)};
}

API_Guid EditHistory::Add(const std::shared_ptr<const Project>& source, const Element& like, How how) {
    const std::string globalId = source->GlobalIdOf(like);
    Entry entry;
    entry.how = how;
    entry.element.source = source;
    entry.element.like = &like;
    entry.element.copy = copies[&like].entries.size();
    entry.element.globalId = globalIds->Take(globalId);
    if (entry.element.globalId != globalId || source->ForeignIds().contains(like.record)) {
        entry.element.externalIfcId = like.externalIfcId != APINULLGuid
                                          ? like.externalIfcId
                                          : GuidFromGlobalId(globalId).value_or(APINULLGuid);
    }
    entry.guid = base->GuidFor(entry.element.globalId);
    const API_Guid guid = entry.guid;
    const std::size_t copy = entry.element.copy;
    entries.push_back(std::move(entry));
    Note(entries.size() - 1);

    const Parts& parts = PartsIn(*source);
    if (const auto own = parts.find(like.record); own != parts.end()) {
        for (const Element* part : own->second) {
            // A part that was created on its own before becomes the part of this one.
            const auto known = copies.find(part);
            if (known == copies.end() || known->second.entries.size() <= copy)
                Add(source, *part, How::cameAlong);
        }
    }
    return guid;
}

const EditHistory::Parts& EditHistory::PartsIn(const Project& source) {
    const auto [known, isNew] = partsOf.try_emplace(&source);
    if (!isNew) return known->second;
    for (const Element& element : source.Elements()) {
        const ProductStructure& structure = source.Structure();
        for (const auto& whole : {structure.WholeOf(element.record), structure.HostOf(element.record)}) {
            if (whole && source.FindByRecord(*whole)) known->second[*whole].push_back(&element);
        }
    }
    return known->second;
}

std::vector<std::string> EditHistory::UndoNames() const {
    std::vector<std::string> names;
    for (std::size_t step = 0; step < position; ++step)
        names.push_back(steps[step].name);
    return names;
}

bool EditHistory::Undo(std::size_t count) {
    if (position == 0 || count == 0) return false;
    position -= std::min(count, position);
    return true;
}

bool EditHistory::Redo(std::size_t count) {
    if (position == steps.size() || count == 0) return false;
    position += std::min(count, steps.size() - position);
    return true;
}

std::shared_ptr<const Project> EditHistory::CurrentProject(const Progress& progress) {
    const std::size_t count = EntriesInForce();
    std::vector<NewElement> elements;
    for (std::size_t entry = 0; entry < count; ++entry)
        if (entries[entry].how != How::adopted) elements.push_back(entries[entry].element);
    auto project = elements.empty() ? base : Merge(*base, elements, progress);
    if (project) madeOf = count;
    return project;
}

bool EditHistory::ReturnToMade() {
    for (std::size_t step = 0; madeOf && !open && step <= steps.size(); ++step) {
        if (EntriesAt(step) != *madeOf) continue;
        position = step;
        return true;
    }
    return false;
}

}  // namespace workbench
