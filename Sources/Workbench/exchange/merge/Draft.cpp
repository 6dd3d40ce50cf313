#include "Workbench/exchange/merge/Draft.hpp"

#include <algorithm>

#include "Workbench/step/Arguments.hpp"

namespace workbench {

Draft::Draft(const step::Document& document, Subset subset)
    : document(document),
      records(std::move(subset.records)),
      changed(std::move(subset.changes.records)),
      highest(document.HighestId()) {
    if (!changed.empty()) highest = std::max(highest, changed.rbegin()->first);
}

std::string_view Draft::Text(uint64_t id) const {
    if (!changed.empty()) {
        if (const auto found = changed.find(id); found != changed.end()) return found->second;
    }
    const step::Record* record = document.Find(id);
    return record ? document.Text(*record) : std::string_view();
}

std::string Draft::TypeOf(uint64_t id) const {
    if (const step::Record* record = document.Find(id)) return std::string(document.TypeName(*record));
    const std::string_view text = Text(id);
    const size_t begin = text.find('=') + 1;
    const size_t end = text.find('(');
    return end == std::string_view::npos ? std::string() : std::string(text.substr(begin, end - begin));
}

std::string_view Draft::Argument(uint64_t id, size_t n) const {
    return step::Argument(Text(id), n);
}

void Draft::SetArgument(uint64_t id, size_t n, std::string_view value) {
    changed[id] = step::WithArgument(Text(id), n, value);
}

uint64_t Draft::Add(std::string_view typeAndArguments) {
    ++highest;
    changed.emplace(highest, Reference(highest) + "=" + std::string(typeAndArguments) + ";");
    return highest;
}

}  // namespace workbench
