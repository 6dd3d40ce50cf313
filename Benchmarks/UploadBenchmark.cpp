// How long the add-on takes to upload a file, beside the curl program on the same service, and how much
// memory the service takes for it. Usage: UploadBenchmark [MiB, default 1024] [rounds, default 6]

#include <fcntl.h>
#include <httplib.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <string>

#include "Measuring.hpp"
#include "ServiceProcess.hpp"
#include "transfer/BaseExport.hpp"

namespace fs = std::filesystem;

namespace {

using namespace benchmarks;

class Upload : public BaseExport {
  public:
    Upload(const std::string& token, std::string url, std::string file)
        : BaseExport(GS::UniString(token.c_str()), GS::UniString()),
          url(std::move(url)),
          file(std::move(file)) {}

    void Run() override {
        const auto outcome = Post(GS::UniString(file.c_str()));
        done = outcome && outcome->transferred && outcome->body.ToCStr().Get()[0] == '[';
    }
    GS::UniString GetEndPoint() const override { return GS::UniString(url.c_str()); }

    bool done = false;

  private:
    std::string url;
    std::string file;
};

void Measure(const fs::path& dir, size_t mebibytes, int rounds) {
    const fs::path file = dir / "model.ifc";
    WriteFile(file, mebibytes);
    ServiceProcess service(dir / "data");
    const SignedIn person(service);
    const std::string& token = person.token;
    const std::string url =
        "http://127.0.0.1:" + std::to_string(service.Port()) + "/api/document?folderId=" + person.folder;

    const int nowhere = open("/dev/null", O_WRONLY | O_CLOEXEC);
    const auto withCurl = [&] {
        const std::string header = "X-Project-Authorization: bearer " + token;
        const pid_t pid =
            Spawn("curl", {"-sS", "--fail", "-H", header, "-F", "file=@" + file.native(), url}, nowhere);
        if (Wait(pid) != 0) throw std::runtime_error("curl failed");
    };
    const auto withAddOn = [&] {
        Upload upload(token, url, file);
        upload.Run();
        if (!upload.done) throw std::runtime_error("the add-on's upload failed");
    };

    service.ForgetPeak();
    const double before = service.PeakMiB();
    const auto [curl, addOn] = BestInTurns(rounds, withCurl, withAddOn, [&] {
        for (const auto& stored : fs::directory_iterator(dir / "data/stored"))
            fs::remove(stored);
    });
    close(nowhere);
    const double size = static_cast<double>(mebibytes);
    std::printf("upload of %zu MiB, best of %d\n", mebibytes, rounds);
    std::printf("  curl -F          %7.2f s  %6.0f MiB/s\n", curl, size / curl);
    std::printf("  add-on           %7.2f s  %6.0f MiB/s  ratio %.3f\n", addOn, size / addOn, addOn / curl);
    std::printf("  service's memory %7.1f MiB, growth %.1f MiB\n", before, service.PeakMiB() - before);
}

}  // namespace

int main(int count, char** values) {
    std::string dir = fs::temp_directory_path() / "kestrane-upload-XXXXXX";
    if (mkdtemp(dir.data()) == nullptr) return 1;
    int status = 0;
    try {
        Measure(dir, count > 1 ? std::stoul(values[1]) : 1024, count > 2 ? std::stoi(values[2]) : 6);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "UploadBenchmark: %s\n", error.what());
        status = 1;
    }
    fs::remove_all(dir);
    return status;
}
