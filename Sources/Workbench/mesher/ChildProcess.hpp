#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

namespace workbench {

// A file descriptor with an owner.
class Descriptor {
  public:
    Descriptor() = default;
    explicit Descriptor(int number) : number(number) {}
    Descriptor(Descriptor&& other) noexcept : number(other.Release()) {}
    Descriptor& operator=(Descriptor&& other) noexcept;
    ~Descriptor() { Close(); }

    int Number() const { return number; }
    explicit operator bool() const { return number >= 0; }
    void Close();

  private:
    int Release();

    int number = -1;
};

// A running child with its three streams. Destroying it kills and reaps it.
class ChildProcess {
  public:
    // Starts `arguments` (the first is a program in PATH, or a path). Throws std::system_error.
    explicit ChildProcess(const std::vector<std::string>& arguments);
    ~ChildProcess();
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;

    pid_t Id() const { return id; }
    int Output() const { return output.Number(); }      // non-blocking
    int ErrorOutput() const { return error.Number(); }  // non-blocking

    // False when the child does not take the bytes.
    bool Write(const std::string& bytes);

    // Kills the child if it still runs, and says how it ended: "exit status 1", "signal 9 (Killed)".
    std::string End();

  private:
    pid_t id = 0;
    std::string ending;
    Descriptor input;
    Descriptor output;
    Descriptor error;
};

}  // namespace workbench
