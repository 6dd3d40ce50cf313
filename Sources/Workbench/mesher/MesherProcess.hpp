#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "Workbench/mesher/Mesh.hpp"

namespace workbench {

struct MesherSettings {
    std::filesystem::path script;  // mesher.mjs with its node_modules beside it
    std::string node = "node";     // a program in PATH, or a path
    std::chrono::milliseconds timeLimit = std::chrono::minutes(10);  // for one file
};

// Some of a file's shapes, in file order. `done` of `total` elements are through, those without a shape too.
struct MeshBatch {
    std::vector<ElementMeshPtr> elements;
    std::size_t done = 0;
    std::size_t total = 0;
};

struct MeshOutcome {
    enum class Status {
        Done,       // every element was tried
        Refused,    // the file can't be read as IFC; detail says why
        Cancelled,  // by Cancel, by the next Mesh, or by the end of the MesherProcess
        TimedOut,
        Crashed,  // the child ended, could not be started, or talked nonsense
    };
    Status status = Status::Done;
    std::size_t elements = 0;           // shapes delivered
    std::vector<std::uint64_t> failed;  // records of elements whose shape could not be made
    std::string detail;                 // for a log: exit status or signal, last lines of standard error
};

// Makes the shapes of IFC files in a child process of its own, so that a bad file can only end the child.
// The child is started by the constructor and kept; after a crash, a time-out or a cancelled file the next
// one is started at once. One file at a time. All functions may be called from any thread.
class MesherProcess {
  public:
    using OnBatch = std::function<void(MeshBatch)>;
    using OnDone = std::function<void(MeshOutcome)>;

    explicit MesherProcess(MesherSettings settings);
    // Ends the child without waiting for the file it works on, whose onDone gets Cancelled first.
    // Not to be called from a callback.
    ~MesherProcess();
    MesherProcess(const MesherProcess&) = delete;
    MesherProcess& operator=(const MesherProcess&) = delete;

    // Makes the shapes of the (unpacked) IFC file `path`. A file under way is cancelled. Both functions are
    // called on the mesher's own thread; onDone exactly once for each call, as the last.
    void Mesh(const std::filesystem::path& path, OnBatch onBatch, OnDone onDone);

    // Ends the file under way, if any.
    void Cancel();

    // The child's process number, 0 while there is none.
    int ChildId() const;

  private:
    class Worker;
    std::unique_ptr<Worker> worker;
};

}  // namespace workbench
