#pragma once

#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <initializer_list>
#include <string>

namespace benchmarks {

/// Ends the program when a measured step went wrong; keeps the compiler from leaving out what is measured.
inline void Expect(bool right, int line = __builtin_LINE()) {
    if (right) return;
    std::fprintf(stderr, "A measured step went wrong, line %d.\n", line);
    std::exit(1);
}

inline double Seconds(const std::function<void()>& job) {
    const auto begin = std::chrono::steady_clock::now();
    job();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
}

/// The most memory that this process has had.
inline double PeakMegabytes() {
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);)
        if (line.starts_with("VmHWM:")) return std::strtod(line.c_str() + 6, nullptr) / 1024;
    return 0;
}

/// Runs this program once for each argument, in a process of its own; its exit status.
inline int RunForEach(const char* program, std::initializer_list<const char*> arguments) {
    std::fflush(stdout);
    for (const char* argument : arguments) {
        const pid_t child = fork();
        if (child == 0) {
            execl("/proc/self/exe", program, argument, nullptr);
            std::_Exit(1);
        }
        int status = 0;
        if (waitpid(child, &status, 0) < 0 || status != 0) return 1;
    }
    return 0;
}

}  // namespace benchmarks
