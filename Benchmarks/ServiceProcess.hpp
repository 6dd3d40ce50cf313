#pragma once

#include <sys/types.h>

#include <cstddef>
#include <filesystem>
#include <string>
#include <vector>

namespace benchmarks {

/// Starts a program of PATH with its standard output going to the descriptor. Throws std::runtime_error.
pid_t Spawn(const std::string& program, std::vector<std::string> arguments, int output);
/// Its exit status, once it has ended.
int Wait(pid_t pid);

/// The service as a process of its own, so that its memory is nobody else's.
class ServiceProcess {
  public:
    /// Port 0: a free one.
    explicit ServiceProcess(const std::filesystem::path& data, int wantedPort = 0);
    ~ServiceProcess();
    ServiceProcess(const ServiceProcess&) = delete;
    ServiceProcess& operator=(const ServiceProcess&) = delete;

    int Port() const { return port; }
    void ForgetPeak() const;
    double PeakMiB() const;

  private:
    pid_t pid = -1;
    int port = 0;
};

/// The demo account, signed in.
struct SignedIn {
    explicit SignedIn(const ServiceProcess& service);

    std::string token, project, folder;  // the first of each
};

/// Writes so many MiB that do not compress, another content for each seed.
void WriteFile(const std::filesystem::path& file, size_t mebibytes, size_t seed = 0);

}  // namespace benchmarks
