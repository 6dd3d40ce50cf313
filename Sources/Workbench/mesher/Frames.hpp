#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <variant>
#include <vector>

#include "Workbench/mesher/Mesh.hpp"

namespace workbench {

// What the child says; mesher.mjs describes the bytes.
struct MeshFailed {
    std::uint64_t record = 0;
    std::string reason;
};
struct MeshProgress {
    std::uint32_t done = 0;
    std::uint32_t total = 0;
};
struct MeshRefused {
    std::string reason;
};
struct MeshDone {};
using MeshMessage = std::variant<ElementMeshPtr, MeshFailed, MeshProgress, MeshRefused, MeshDone>;

// Takes the child's output apart, however it was cut into pieces.
class FrameReader {
  public:
    void Add(const char* bytes, std::size_t count) { buffer.insert(buffer.end(), bytes, bytes + count); }

    // Hands every complete message to `take`. False when the bytes make no sense; nothing more can be read
    // from this child then. An element with a bad index or coordinate becomes a MeshFailed.
    bool Read(const std::function<void(MeshMessage)>& take);

  private:
    std::vector<char> buffer;
};

}  // namespace workbench
