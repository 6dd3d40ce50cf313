#include "Workbench/exchange/UsedGlobalIds.hpp"

#include <vector>

#include "Workbench/project/Classes.hpp"
#include "Workbench/step/Arguments.hpp"

namespace workbench {
namespace {

/// The same GUID for the same text, whether it is a GlobalId or not.
API_Guid KeyOf(const std::string& globalId) {
    return GuidFromGlobalId(globalId).value_or(GuidFromName(globalId));
}

}  // namespace

UsedGlobalIds::UsedGlobalIds(const step::Document& document) {
    std::vector<bool> isRooted;
    for (const std::string& type : document.TypeNames())
        isRooted.push_back(IsRootedClass(type));
    for (const step::Record& record : document.Records()) {
        if (!isRooted[record.type]) continue;
        const std::string_view first = step::Argument(document.Text(record), 0);
        if (first.size() > 2 && first.front() == '\'')
            used.insert(KeyOf(std::string(first.substr(1, first.size() - 2))));
    }
}

std::string UsedGlobalIds::Take(const std::string& globalId) {
    if (GuidFromGlobalId(globalId) && used.insert(KeyOf(globalId)).second) return globalId;
    for (int attempt = 1;; ++attempt) {
        const API_Guid guid = GuidFromName(globalId + "/copy/" + std::to_string(attempt));
        if (used.insert(guid).second) return GlobalIdFromGuid(guid);
    }
}

void UsedGlobalIds::Release(const std::string& globalId) {
    used.erase(KeyOf(globalId));
}

}  // namespace workbench
