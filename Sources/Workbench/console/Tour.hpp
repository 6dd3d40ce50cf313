#pragma once

#include <QElapsedTimer>
#include <filesystem>
#include <functional>
#include <string>

#include "Workbench/console/Automation.hpp"

namespace workbench {

/// The page's jobs in turn, through the real page, on one model: a line each with its time and outcome on
/// standard output, pictures and files in a folder.
class Tour {
  public:
    Tour(Application& application, Automation& automation, const std::filesystem::path& folder);

    /// True when every job succeeded. What depends on a failed one is not tried.
    bool Run(const std::filesystem::path& model);

  private:
    bool Step(const std::string& name, const std::function<std::string()>& work);
    std::string OpenModel(const std::filesystem::path& model);
    std::string OpenPalette();
    std::string SignIn();
    std::string UploadModel();
    std::string Upload(const std::string& name);
    std::string CompareStored();
    bool PublishSet();
    std::string PublishTicked();
    bool UploadPlans();
    std::string MergeWithCopy();
    std::string UndoMerge();
    bool ReturnToViewpoints();
    std::string TakePictures();

    Application& application;
    Automation& automation;
    std::filesystem::path folder;
    std::size_t elementCount = 0;  // of the model
    std::string documentId;
};

}  // namespace workbench
