#include "AddOn/AddOnTest.hpp"

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <sstream>

#include "BM.hpp"
#include "ThreadRegister.hpp"

namespace tests {

using namespace std::chrono_literals;

TemporaryFolder::TemporaryFolder() {
    std::string name = (std::filesystem::temp_directory_path() / "kestrane-test-XXXXXX").string();
    path = mkdtemp(name.data());
}

TemporaryFolder::~TemporaryFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path, ignored);
}

std::string ReadFile(const std::filesystem::path& file) {
    std::ifstream in(file, std::ios::binary);
    std::ostringstream text;
    text << in.rdbuf();
    return text.str();
}

std::string ToText(const GS::UniString& text) {
    return text.ToCStr(0, MaxUSize, CC_UTF8).Get();
}

GS::Ref<DG::JSBase> Text(const std::string& text) {
    return new DG::JSValue(GS::UniString(text.c_str(), CC_UTF8));
}

void AddOnTest::Start(workbench::Language language) {
    workbench::Settings settings;
    settings.language = language;
    settings.dataFolder = DataFolder();
    settings.resourcesFolder = std::filesystem::path(KESTRANE_SHARE) / "resources";
    settings.mesher.script = std::filesystem::path(KESTRANE_SHARE) / "mesher" / "mesher.mjs";
    application = std::make_unique<workbench::Application>(settings, queue, driver);
    ASSERT_EQ(application->Start(), NoError);
}

void AddOnTest::StartWithPalette(workbench::Language language) {
    Start(language);
    ASSERT_EQ(Registry().SendPaletteMessage(APIPalMsg_OpenPalette), NoError);
}

void AddOnTest::Stop() {
    if (!application) return;
    hostkit::UnloadAddOn();
    application.reset();
}

void AddOnTest::TearDown() {
    Stop();
    EXPECT_TRUE(hostkit::ThreadRegister::Instance().WaitForAll(20s)) << "a thread of the add-on does not end";
    EXPECT_EQ(hostkit::LiveHandles(), 0) << "a host handle was not released";
}

std::filesystem::path AddOnTest::Sample() {
    for (const auto& file : std::filesystem::directory_iterator(KESTRANE_SAMPLES)) {
        if (file.path().extension() == ".ifc") return file.path();
    }
    return {};
}

void AddOnTest::OpenSample() {
    ASSERT_TRUE(application->Open(Sample()));
    ASSERT_TRUE(queue.RunUntil([this] { return !application->IsShaping(); }, 60s));
}

bool AddOnTest::IsMenuChecked() {
    return (Registry().Menus().at(0).itemFlags.at(0) & API_MenuItemChecked) != 0;
}

GS::Ref<DG::JSBase> AddOnTest::Call(const std::string& function, const GS::Ref<DG::JSBase>& argument) {
    return driver.Call(function, argument);
}

std::string AddOnTest::CallForText(const std::string& function) {
    const auto result = GS::DynamicCast<DG::JSValue>(Call(function));
    EXPECT_EQ(result->GetType(), DG::JSValue::STRING);
    return ToText(result->GetString());
}

std::string AddOnTest::CallForText(const std::string& function, const std::string& argument) {
    const auto result = GS::DynamicCast<DG::JSValue>(Call(function, Text(argument)));
    EXPECT_EQ(result->GetType(), DG::JSValue::STRING);
    return ToText(result->GetString());
}

bool AddOnTest::WaitForScript(const std::string& script, std::chrono::milliseconds timeout) {
    return queue.RunUntil([&] { return driver.WaitForScript(script, 0ms); }, timeout);
}

std::size_t AddOnTest::CountScripts(const std::string& script) const {
    const auto scripts = driver.Scripts();
    return static_cast<std::size_t>(std::count_if(
        scripts.begin(), scripts.end(), [&](const auto& executed) { return executed.text == script; }));
}

}  // namespace tests
