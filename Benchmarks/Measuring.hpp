#pragma once

#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <initializer_list>
#include <limits>
#include <string>
#include <utility>

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

/// The best times of two jobs that take turns, so that neither always comes right after the other. What an
/// earlier run wrote is not waited for in a later one; `after` follows each of them.
inline std::pair<double, double> BestInTurns(int rounds, const std::function<void()>& first,
                                             const std::function<void()>& second,
                                             const std::function<void()>& after) {
    double best[] = {std::numeric_limits<double>::max(), std::numeric_limits<double>::max()};
    for (int run = 0; run < 2 * rounds; ++run) {
        const int which = (run + run / 2) % 2;
        sync();
        best[which] = std::min(best[which], Seconds(which == 0 ? first : second));
        after();
    }
    return {best[0], best[1]};
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
