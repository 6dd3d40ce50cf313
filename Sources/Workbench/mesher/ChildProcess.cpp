#include "Workbench/mesher/ChildProcess.hpp"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <string.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <system_error>
#include <utility>

namespace workbench {
namespace {

constexpr int pipeSize = 1 << 20;

void Check(int error, const char* what) {
    if (error != 0) throw std::system_error(error, std::generic_category(), what);
}

struct Ends {
    Descriptor ours;
    Descriptor childs;
};

Ends OutputPipe() {
    std::array<int, 2> ends{};
    Check(pipe2(ends.data(), O_CLOEXEC) == 0 ? 0 : errno, "pipe");
    Ends result{Descriptor(ends[0]), Descriptor(ends[1])};
    fcntl(ends[0], F_SETFL, O_NONBLOCK);
    fcntl(ends[0], F_SETPIPE_SZ, pipeSize);
    return result;
}

// A socket instead of a pipe, because only send() can be told to raise no SIGPIPE.
Ends InputSocket() {
    std::array<int, 2> ends{};
    Check(socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends.data()) == 0 ? 0 : errno, "socketpair");
    return {Descriptor(ends[0]), Descriptor(ends[1])};
}

struct SpawnAttributes {
    posix_spawnattr_t value;

    SpawnAttributes() {
        Check(posix_spawnattr_init(&value), "posix_spawnattr_init");
        sigset_t none;
        sigemptyset(&none);
        sigset_t all;
        sigfillset(&all);
        posix_spawnattr_setsigmask(&value, &none);
        posix_spawnattr_setsigdefault(&value, &all);
        posix_spawnattr_setflags(&value, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
    }
    ~SpawnAttributes() { posix_spawnattr_destroy(&value); }
    SpawnAttributes(const SpawnAttributes&) = delete;
    SpawnAttributes& operator=(const SpawnAttributes&) = delete;
};

struct SpawnActions {
    posix_spawn_file_actions_t value;

    SpawnActions() { Check(posix_spawn_file_actions_init(&value), "posix_spawn_file_actions_init"); }
    ~SpawnActions() { posix_spawn_file_actions_destroy(&value); }
    SpawnActions(const SpawnActions&) = delete;
    SpawnActions& operator=(const SpawnActions&) = delete;
};

std::string Describe(int status) {
    if (WIFEXITED(status)) return "exit status " + std::to_string(WEXITSTATUS(status));
    const int signal = WTERMSIG(status);
    return "signal " + std::to_string(signal) + " (" + sigdescr_np(signal) + ")";
}

}  // namespace

Descriptor& Descriptor::operator=(Descriptor&& other) noexcept {
    if (this == &other) return *this;
    Close();
    number = other.Release();
    return *this;
}

int Descriptor::Release() {
    return std::exchange(number, -1);
}

void Descriptor::Close() {
    if (number >= 0) close(Release());
}

ChildProcess::ChildProcess(const std::vector<std::string>& arguments) {
    Ends in = InputSocket();
    Ends out = OutputPipe();
    Ends err = OutputPipe();
    const SpawnAttributes attributes;
    SpawnActions actions;
    Check(posix_spawn_file_actions_adddup2(&actions.value, in.childs.Number(), STDIN_FILENO), "stdin");
    Check(posix_spawn_file_actions_adddup2(&actions.value, out.childs.Number(), STDOUT_FILENO), "stdout");
    Check(posix_spawn_file_actions_adddup2(&actions.value, err.childs.Number(), STDERR_FILENO), "stderr");

    std::vector<std::string> copies = arguments;
    std::vector<char*> pointers;
    pointers.reserve(copies.size() + 1);
    for (std::string& argument : copies)
        pointers.push_back(argument.data());
    pointers.push_back(nullptr);
    Check(posix_spawnp(&id, pointers[0], &actions.value, &attributes.value, pointers.data(), environ),
          pointers[0]);

    input = std::move(in.ours);
    output = std::move(out.ours);
    error = std::move(err.ours);
}

ChildProcess::~ChildProcess() {
    End();
}

bool ChildProcess::Write(const std::string& bytes) {
    std::size_t sent = 0;
    while (sent < bytes.size()) {
        const ssize_t count =
            send(input.Number(), bytes.data() + sent, bytes.size() - sent, MSG_NOSIGNAL | MSG_DONTWAIT);
        if (count < 0 && errno == EINTR) continue;
        if (count <= 0) return false;
        sent += static_cast<std::size_t>(count);
    }
    return true;
}

std::string ChildProcess::End() {
    if (!ending.empty()) return ending;
    int status = 0;
    pid_t reaped = waitpid(id, &status, WNOHANG);
    if (reaped == 0) {
        kill(id, SIGKILL);
        do
            reaped = waitpid(id, &status, 0);
        while (reaped < 0 && errno == EINTR);
    }
    ending = reaped == id ? Describe(status) : "unknown exit status";
    return ending;
}

}  // namespace workbench
