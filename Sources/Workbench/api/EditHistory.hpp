#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "Workbench/exchange/Merge.hpp"
#include "Workbench/exchange/UsedGlobalIds.hpp"
#include "Workbench/project/Project.hpp"

namespace workbench {

/// What was created in a project since it was opened, as steps with names that can be undone one by one.
/// Projects never change: CurrentProject() makes another one of the opened one and the steps.
class EditHistory {
  public:
    /// Nothing was created in this project yet.
    void Reset(std::shared_ptr<const Project> project);

    /// A step begins, and ends; one that failed or created nothing leaves no trace.
    void Begin(std::string name);
    void End(bool succeeded);

    enum class Refusal { none, otherSchema, noElement, noStep };
    struct Created {
        Refusal refusal = Refusal::none;
        API_Guid guid = APINULLGuid;
    };
    /// In a step: creates an element like this one, with its parts and what fills its openings. What has come
    /// along with another element of its project is there already and only becomes a creation of its own.
    Created Create(const std::shared_ptr<const Project>& source, const API_Guid& element);

    std::size_t UndoCount() const { return position; }
    std::size_t RedoCount() const { return steps.size() - position; }
    /// Empty without one.
    std::string NextUndoName() const { return position == 0 ? "" : steps[position - 1].name; }
    std::string NextRedoName() const { return position == steps.size() ? "" : steps[position].name; }
    /// Oldest first.
    std::vector<std::string> UndoNames() const;
    /// So many steps, or as many as there are; false when there is none.
    bool Undo(std::size_t count);
    bool Redo(std::size_t count);

    /// True when CurrentProject() would make another project than it did last.
    bool IsOutdated() const { return madeOf != EntriesInForce(); }
    /// The opened project with what the steps up to here created; null when the progress function stopped it.
    std::shared_ptr<const Project> CurrentProject(const Progress& progress = {});

    /// Goes to the step that the current project was made at, as undoing or redoing does: after a making that
    /// was stopped. False when there is none, or inside a step.
    bool ReturnToMade();

    bool IsModified() const { return savedAt != position; }
    void MarkSaved() { savedAt = position; }

  private:
    struct Step {
        std::string name;
        std::size_t end;  // its entries end before this one
    };
    enum class How { created, cameAlong, adopted };
    struct Entry {
        NewElement element;
        API_Guid guid;
        How how;
    };
    /// Which entries are like an element, one for each copy of it.
    struct Copies {
        std::vector<std::size_t> entries;
        bool lastIsAdoptable = false;
    };
    using Parts = std::unordered_map<uint64_t, std::vector<const Element*>>;

    std::size_t EntriesInForce() const {
        return open && position == steps.size() ? entries.size() : EntriesAt(position);
    }
    std::size_t EntriesAt(std::size_t step) const { return step == 0 ? 0 : steps[step - 1].end; }
    void ForgetUndone();
    void Prepare();
    void Truncate(std::size_t count);
    void Note(std::size_t entry);
    API_Guid Add(const std::shared_ptr<const Project>& source, const Element& like, How how);
    const Parts& PartsIn(const Project& source);

    std::shared_ptr<const Project> base;
    std::vector<Entry> entries;
    std::vector<Step> steps;
    std::size_t position = 0;                // in steps
    std::optional<std::size_t> savedAt = 0;  // none: what was saved cannot be come back to
    std::optional<std::size_t> madeOf = 0;   // so many entries are in the current project; none: others are
    std::optional<std::string> open;         // name of the step under way

    // Made with the first creation after an opening or an undoing.
    std::optional<UsedGlobalIds> globalIds;
    std::unordered_map<const Element*, Copies> copies;
    std::unordered_map<const Project*, Parts> partsOf;
};

}  // namespace workbench
