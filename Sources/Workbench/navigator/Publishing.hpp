#pragma once

#include <filesystem>
#include <span>
#include <string>
#include <vector>

#include "Workbench/navigator/PublisherSets.hpp"

namespace workbench {

class Application;

struct PublishResult {
    struct Failure {
        std::string item;     // its name
        std::string problem;  // for a person
    };
    std::vector<std::filesystem::path> files;  // those that were written
    std::vector<Failure> failures;
    bool stopped = false;  // by an observer of the work; what was written by then stays
};

/// Writes the files of these items into the folder, which is made when it is missing; a folder item's into a
/// folder of its name. What fails leaves no file, and does not keep the others from being written. Observers
/// of the application watch the work, but are not told of its end, for who calls may go on. The person's
/// windows stay as they are.
PublishResult Publish(Application& application, std::span<const PublisherItem* const> items,
                      const std::filesystem::path& folder);

/// Turns the windows to what a plan, a view or the model is published from.
void BringToFront(Application& application, const PublisherItem& item);

/// The name as part of a path: what file systems do not take is replaced, and it is not too long.
std::string FileNameOf(const std::string& name);

}  // namespace workbench
