#pragma once

#include <string>
#include <unordered_set>

#include "Workbench/project/GlobalId.hpp"
#include "Workbench/step/Document.hpp"

namespace workbench {

/// The GlobalIds that a project's records have, and those that are given away.
class UsedGlobalIds {
  public:
    explicit UsedGlobalIds(const step::Document& document);

    /// The text itself when it is free, else one that always is the same for the same text and set. It is in
    /// use from then on.
    std::string Take(const std::string& globalId);
    void Release(const std::string& globalId);

  private:
    std::unordered_set<API_Guid, GuidHash> used;
};

}  // namespace workbench
