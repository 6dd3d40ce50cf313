#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <initializer_list>
#include <memory>
#include <string>
#include <vector>

#include "DGModule.hpp"
#include "HostKit/API/AddOnLoader.hpp"
#include "HostKit/API/Registry.hpp"
#include "HostKit/DG/RecordingDriver.hpp"
#include "Workbench/api/Application.hpp"

namespace tests {

/// A folder of a test's own, gone with it.
class TemporaryFolder {
  public:
    TemporaryFolder();
    ~TemporaryFolder();
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    const std::filesystem::path& Path() const { return path; }

  private:
    std::filesystem::path path;
};

std::string ReadFile(const std::filesystem::path& file);
std::string ToText(const GS::UniString& text);

/// The add-on in a Workbench without windows, driven through the host's interface: as a person by menu and
/// palette, as the page by script values. Each test ends with its threads done and no host handle alive.
class AddOnTest : public testing::Test {
  protected:
    void TearDown() override;

    /// Starts the host and loads the add-on.
    void Start(workbench::Language language = workbench::Language::english);
    /// The same with the palette open.
    void StartWithPalette(workbench::Language language = workbench::Language::english);
    void Stop();

    /// Opens the sample model as a person does and waits until the add-on has been told.
    void OpenSample();
    static std::filesystem::path Sample();

    hostkit::Registry& Registry() { return application->GetSession().GetRegistry(); }
    hostkit::Faults& Faults() { return application->GetSession().GetFaults(); }
    bool IsMenuChecked();
    GSErrCode ChooseMenu() { return Registry().ChooseMenuItem(32500, 1); }

    /// Calls a function of the page's object.
    GS::Ref<DG::JSBase> Call(const std::string& function, const GS::Ref<DG::JSBase>& argument = nullptr);
    /// The same with a text for an argument and a text for a result (which must be one).
    std::string CallForText(const std::string& function);
    std::string CallForText(const std::string& function, const std::string& argument);

    /// Waits, with the host's main thread at work, until the add-on has executed this script.
    bool WaitForScript(const std::string& script,
                       std::chrono::milliseconds timeout = std::chrono::seconds(20));
    std::size_t CountScripts(const std::string& script) const;

    std::filesystem::path DataFolder() const { return folder.Path() / "data"; }
    std::filesystem::path ExportFolder() const { return DataFolder() / "Temporary"; }

    TemporaryFolder folder;
    workbench::MainQueue queue;
    hostkit::dg::RecordingDriver driver;
    std::unique_ptr<workbench::Application> application;
};

GS::Ref<DG::JSBase> Text(const std::string& text);

}  // namespace tests
