#pragma once

#include <QImage>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "Workbench/console/Automation.hpp"

namespace workbench {

/// The tour's part about viewpoints: takes one of each kind through the page, goes elsewhere, opens it there
/// again, and compares what the 3D window shows with what it showed. The page must be signed in.
class ViewpointTour {
  public:
    ViewpointTour(Application& application, Automation& automation, const std::filesystem::path& folder);

    struct View {
        std::string name;
        std::function<void()> arrange;
    };
    /// The whole model, a section, one storey, a single element.
    std::vector<View> Views();

    /// Makes the topic that the viewpoints go to; answers its title.
    std::string OpenTopic();
    /// Takes the view, leaves it and comes back; answers how far the pictures agree, throws when they do not.
    std::string TakeAndRestore(const View& view);
    /// Writes the pictures side by side, a row for each view, and the last view's singly; answers the file's
    /// name.
    std::string SavePictures() const;

  private:
    void Arrange(const std::vector<API_Guid>& shown, const std::vector<Plane>& planes);
    void Leave();
    QImage Picture();
    std::string ClickAndWait(const std::string& selector);

    struct Row {
        QImage taken, left, restored;
    };

    Application& application;
    Automation& automation;
    std::filesystem::path folder;
    std::vector<Row> rows;
};

}  // namespace workbench
