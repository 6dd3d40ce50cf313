#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <memory>

#include "BM.hpp"
#include "HostKit/DG/RecordingDriver.hpp"
#include "Workbench/api/Application.hpp"
#include "Workbench/step/StepTexts.hpp"

namespace workbench {

// The host without windows and without the add-on, in a folder of its own.
class HeadlessApplicationTest : public testing::Test {
  protected:
    void SetUp() override {
        Settings settings;
        settings.dataFolder = folder / "data";
        settings.resourcesFolder = std::filesystem::path(KESTRANE_SHARE) / "resources";
        settings.mesher.script = std::filesystem::path(KESTRANE_SHARE) / "mesher" / "mesher.mjs";
        application = std::make_unique<Application>(settings, queue, driver);
    }

    void TearDown() override {
        application.reset();
        EXPECT_EQ(hostkit::LiveHandles(), 0);
    }

    // Waits for its shapes.
    void OpenSample() {
        ASSERT_TRUE(application->Open(std::filesystem::path(KESTRANE_SAMPLES) / "Gartenpavillon.ifc"));
        ASSERT_TRUE(queue.RunUntil([this] { return !application->IsShaping(); }, std::chrono::minutes(1)));
    }

    step::TemporaryFolder folder;
    MainQueue queue;
    hostkit::dg::RecordingDriver driver;
    std::unique_ptr<Application> application;
};

}  // namespace workbench
