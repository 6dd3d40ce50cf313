// How long the add-on takes to list the tree of a large publisher set, and to upload many published files at
// once, beside the curl program sending the same files. The service listens at the add-on's own address.
// Usage: PublishBenchmark [files, default 200] [MiB of each, default 1] [rounds, default 5]

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <limits>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <string>

#include "HostKit/DG/RecordingDriver.hpp"
#include "HostKit/GSRoot/ThreadRegister.hpp"
#include "Measuring.hpp"
#include "ServiceProcess.hpp"
#include "SyntheticModel.hpp"
#include "Workbench/api/Application.hpp"
#include "palette/KestranePalette.hpp"
#include "palette/PublisherSets.hpp"

namespace fs = std::filesystem;

namespace {

using namespace benchmarks;
using nlohmann::json;

// The add-on in a host without windows.
struct Host {
    explicit Host(const fs::path& dir) : application(SettingsIn(dir), queue, driver) {
        if (application.Start() != NoError) throw std::runtime_error("the add-on was not loaded");
        KestranePalette::CreateInstance();
    }

    static workbench::Settings SettingsIn(const fs::path& dir) {
        workbench::Settings settings;
        settings.dataFolder = dir / "data";
        settings.resourcesFolder = fs::path(KESTRANE_SHARE) / "resources";
        settings.mesher.node = "false";
        return settings;
    }

    workbench::MainQueue queue;
    hostkit::dg::RecordingDriver driver;
    workbench::Application application;
};

constexpr int levels = 8;

// Folders of three each, but on the last level.
json Items(std::size_t leaves, int level = 1) {
    json items = json::array();
    if (level == levels) {
        for (std::size_t number = 0; number < leaves; ++number)
            items.push_back({{"name", "Model " + std::to_string(number)}, {"show", "model"}});
        return items;
    }
    for (int number = 0; number < 3; ++number)
        items.push_back({{"name", "Folder " + std::to_string(number)}, {"items", Items(leaves, level + 1)}});
    return items;
}

void MeasureTree(const fs::path& dir, Host& host, std::size_t leaves) {
    std::ofstream(dir / "model.publisher.json")
        << json{{"sets", {{{"name", "s"}, {"items", Items(leaves)}}}}};
    if (!host.application.Open(dir / "model.ifc")) throw std::runtime_error("the model was not opened");
    const json sets = json::parse(GetPublishSetHeaders().ToCStr(0, MaxUSize, CC_UTF8).Get());
    const GS::UniString request(json{{"rootGuid", sets.at(0).at("rootGuid")}}.dump().c_str(), CC_UTF8);

    double best = std::numeric_limits<double>::max();
    GS::UniString tree;
    for (int round = 0; round < 5; ++round)
        best = std::min(best, Seconds([&] { tree = GetPublishSetItems(request); }));
    const std::string text = tree.ToCStr(0, MaxUSize, CC_UTF8).Get();
    std::size_t items = 0;
    for (std::size_t at = text.find("\"key\""); at != std::string::npos; at = text.find("\"key\"", at + 1))
        ++items;
    std::printf("  %7zu items  %7.1f ms  %5.2f us an item  peak %.0f MB\n", items, best * 1000,
                best * 1e6 / static_cast<double>(items), PeakMegabytes());
}

void MeasureUploads(const fs::path& dir, Host& host, std::size_t count, std::size_t mebibytes, int rounds) {
    const std::string api = KESTRANE_API_BASE_URL;
    ServiceProcess service(dir / "service", std::stoi(api.substr(api.rfind(':') + 1)));
    const SignedIn person(service);
    json items = json::array();
    std::ofstream config(dir / "curl");
    config << "parallel\nparallel-immediate\nparallel-max = 300\nno-progress-meter\n";
    for (std::size_t number = 0; number < count; ++number) {
        const std::string name = "Plan " + std::to_string(number);
        const fs::path file = dir / (name + ".pdf");
        WriteFile(file, mebibytes, number);
        items.push_back({{"key", name},
                         {"docName", name},
                         {"ext", "pdf"},
                         {"filePath", file.string()},
                         {"folder", person.folder}});
        config << (number == 0 ? "" : "next\n") << "fail\noutput = /dev/null\n"
               << "header = \"X-Project-Authorization: bearer " << person.token << "\"\n"
               << "form = \"file=@" << file.string() << "\"\n"
               << "url = \"" << api << "/document?folderId=" << person.folder << "\"\n";
    }
    config.close();
    const json order{{"projectId", person.project}, {"token", person.token}, {"publishItems", items}};
    const GS::UniString request(order.dump().c_str(), CC_UTF8);

    std::atomic<int> running = 0, most = 0;
    auto& threads = hostkit::ThreadRegister::Instance();
    threads.SetObserver([&](const std::string&, hostkit::ThreadRegister::Event event) {
        const bool started = event == hostkit::ThreadRegister::Event::started;
        const int now = running += started ? 1 : -1;
        for (int seen = most; now > seen && !most.compare_exchange_weak(seen, now);) {
        }
    });
    const auto withAddOn = [&] {
        KestranePalette::PublishSeletedItems(request);
        if (!host.driver.WaitForScript("CompleteExportPublish()", std::chrono::minutes(10)))
            throw std::runtime_error("the uploads did not end");
        const auto ids =
            json::parse(KestranePalette::GetExportedPublishItemIds().ToCStr(0, MaxUSize, CC_UTF8).Get());
        if (ids.size() != count) throw std::runtime_error("not every file was uploaded");
    };
    const int nowhere = open("/dev/null", O_WRONLY | O_CLOEXEC);
    const auto withCurl = [&] {
        if (Wait(Spawn("curl", {"-K", dir / "curl"}, nowhere)) != 0) throw std::runtime_error("curl failed");
    };
    const double before = PeakMegabytes();
    const auto [curl, addOn] = BestInTurns(rounds, withCurl, withAddOn, [&] {
        for (const auto& stored : fs::directory_iterator(dir / "service/stored"))
            fs::remove(stored);
    });
    close(nowhere);
    threads.WaitForAll(std::chrono::seconds(10));
    threads.SetObserver({});
    const auto scripts = host.driver.Scripts();
    const auto told = std::count_if(scripts.begin(), scripts.end(), [](const auto& script) {
        return script.text == "CompleteExportPublish()";
    });
    std::printf("upload of %zu files of %zu MiB at once, best of %d\n", count, mebibytes, rounds);
    std::printf("  curl -Z          %7.2f s\n", curl);
    std::printf("  add-on           %7.2f s  ratio %.3f, copies of the files among it\n", addOn,
                addOn / curl);
    std::printf("  the page was told %d times in %d runs; at most %d threads, %.1f MB more memory\n",
                static_cast<int>(told), rounds, most.load(), PeakMegabytes() - before);
}

}  // namespace

int main(int count, char** values) {
    std::string dir = fs::temp_directory_path() / "kestrane-publish-XXXXXX";
    if (mkdtemp(dir.data()) == nullptr) return 1;
    int status = 0;
    try {
        Host host(dir);
        MeasureUploads(dir, host, count > 1 ? std::stoul(values[1]) : 200,
                       count > 2 ? std::stoul(values[2]) : 1, count > 3 ? std::stoi(values[3]) : 5);
        WriteSyntheticModel(fs::path(dir) / "model.ifc", 1);
        std::printf("tree of a publisher set in %d levels, best of 5\n", levels);
        for (const std::size_t leaves : {11, 22, 44})
            MeasureTree(dir, host, leaves);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "PublishBenchmark: %s\n", error.what());
        status = 1;
    }
    fs::remove_all(dir);
    return status;
}
