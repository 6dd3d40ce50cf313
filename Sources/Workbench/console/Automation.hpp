#pragma once

#include <chrono>
#include <filesystem>
#include <functional>
#include <string>

#include "Workbench/api/Application.hpp"
#include "Workbench/desktop/MainWindow.hpp"
#include "Workbench/desktop/QtDriver.hpp"

namespace workbench {

/// What went wrong, worded for the person at the console.
class AutomationError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

/// The Workbench under remote control: each function does one thing as a person would and waits until it is
/// done, while the event loop goes on. Failures throw AutomationError.
class Automation {
  public:
    Automation(Application& application, MainWindow& window, QtDriver& driver)
        : application(application), window(window), driver(driver) {}

    /// Waits until the shapes are there and the add-on was told.
    void Open(const std::filesystem::path& file);

    /// So many steps, or as many as there are; waits until the project has followed and observers were told.
    void Undo(std::size_t steps);
    void Redo(std::size_t steps);
    /// Waits until the project holds what was created in it, with its shapes.
    void WaitForShapes();

    /// Evaluates a script in the page, once that is loaded, and waits for a promise. JSON text of the value.
    std::string Evaluate(const std::string& script,
                         std::chrono::milliseconds timeout = std::chrono::seconds(60));
    /// Evaluates `condition` in the page until it is true.
    void WaitForPage(const std::string& condition, std::chrono::milliseconds timeout);

    /// Saves as PNG what "window", "palette", "3d" or "plan" shows.
    void SavePicture(const std::string& of, const std::filesystem::path& file);

    /// From now on each file that is asked for is this one, and each dialog with a field gets this text.
    void AnswerFile(const std::filesystem::path& file);
    void AnswerName(const std::string& text);

    bool WaitFor(const std::function<bool()>& done, std::chrono::milliseconds timeout);

  private:
    bool IsSettled() const { return !application.History().IsOutdated(); }

    Application& application;
    MainWindow& window;
    QtDriver& driver;
};

}  // namespace workbench
