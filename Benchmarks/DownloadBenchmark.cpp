// How long the add-on takes to download a list of models, beside the curl program fetching the same list.
// The service listens at the add-on's own address.
// Usage: DownloadBenchmark [models, default 20] [MiB of
// each, default 50] [rounds, default 3]

#include <fcntl.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <string>
#include <vector>

#include "HostKit/DG/RecordingDriver.hpp"
#include "HostKit/GSRoot/ThreadRegister.hpp"
#include "Measuring.hpp"
#include "ServiceProcess.hpp"
#include "Workbench/api/Application.hpp"
#include "palette/KestranePalette.hpp"

namespace fs = std::filesystem;

namespace {

using namespace benchmarks;

std::string Output(const std::string& command) {
    const std::unique_ptr<FILE, int (*)(FILE*)> pipe(popen(command.c_str(), "r"), pclose);
    std::string text;
    char piece[4096];
    while (std::fgets(piece, sizeof piece, pipe.get()))
        text += piece;
    return text;
}

void Measure(const fs::path& dir, std::size_t models, std::size_t mebibytes, int rounds) {
    const std::string api = KESTRANE_API_BASE_URL;
    const ServiceProcess service(dir / "service", std::stoi(api.substr(api.rfind(':') + 1)));
    const SignedIn person(service);
    const std::string authorization = " -H 'X-Project-Authorization: bearer " + person.token + "' ";
    nlohmann::json infos = nlohmann::json::array();
    for (std::size_t number = 0; number < models; ++number) {
        const std::string name = "Model " + std::to_string(number);
        const fs::path file = dir / (name + ".ifc");
        WriteFile(file, mebibytes, number);
        std::string upload = "curl -sS --fail" + authorization;
        upload.append("-F 'file=@").append(file.string()).append("' '");
        upload.append(api).append("/document?folderId=").append(person.folder).append("'");
        const std::string answer = Output(upload);
        fs::remove(file);
        const std::string id = nlohmann::json::parse(answer).at(0).at("id");
        infos.push_back({{"id", id}, {"name", name}, {"version", 1}, {"extension", "ifc"}});
    }
    const GS::UniString request(nlohmann::json{{"token", person.token}, {"modelInfos", infos}}.dump().c_str(),
                                CC_UTF8);

    workbench::Settings settings;
    settings.dataFolder = dir / "data";
    settings.resourcesFolder = fs::path(KESTRANE_SHARE) / "resources";
    settings.mesher.node = "false";
    workbench::MainQueue queue;
    hostkit::dg::RecordingDriver driver;
    workbench::Application application(settings, queue, driver);
    if (application.Start() != NoError) throw std::runtime_error("the add-on was not loaded");
    KestranePalette::CreateInstance();
    const fs::path folder = KestranePalette::GetInstance().GetResourceFolder().ToCStr().Get();

    const auto withAddOn = [&] {
        KestranePalette::ImportIfcModels(request);
        if (!driver.WaitForScript("CompleteImportModels()", std::chrono::minutes(10)))
            throw std::runtime_error("the downloads did not end");
    };
    const auto withCurl = [&] {
        std::string command = "curl -sS --fail" + authorization;
        for (const auto& info : infos) {
            command += " -o '" + (folder / (info.at("name").get<std::string>() + "-V1.ifc")).string() +
                       "' '" + api + "/resource/" + info.at("id").get<std::string>() + "'";
        }
        if (std::system(command.c_str()) != 0) throw std::runtime_error("curl failed");
    };
    const auto [curl, addOn] = BestInTurns(rounds, withCurl, withAddOn, [&] {
        std::size_t whole = 0;
        for (const auto& file : fs::directory_iterator(folder)) {
            whole += fs::file_size(file) == mebibytes << 20 ? 1U : 0U;
            fs::remove(file);
        }
        if (whole != models) throw std::runtime_error("not every model came");
    });
    hostkit::ThreadRegister::Instance().WaitForAll(std::chrono::seconds(10));
    const double size = static_cast<double>(models * mebibytes);
    std::printf("download of %zu models of %zu MiB, best of %d\n", models, mebibytes, rounds);
    std::printf("  curl             %7.2f s  %6.0f MiB/s\n", curl, size / curl);
    std::printf("  add-on           %7.2f s  %6.0f MiB/s  ratio %.3f\n", addOn, size / addOn, addOn / curl);
}

}  // namespace

int main(int count, char** values) {
    std::string dir = fs::temp_directory_path() / "kestrane-download-XXXXXX";
    if (mkdtemp(dir.data()) == nullptr) return 1;
    int status = 0;
    try {
        Measure(dir, count > 1 ? std::stoul(values[1]) : 20, count > 2 ? std::stoul(values[2]) : 50,
                count > 3 ? std::stoi(values[3]) : 3);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "DownloadBenchmark: %s\n", error.what());
        status = 1;
    }
    fs::remove_all(dir);
    return status;
}
