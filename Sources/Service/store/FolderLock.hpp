#pragma once

#include <filesystem>

#include "Service/FileHandle.hpp"

namespace service {

// Keeps a data folder to one process, until destroyed or killed. Throws StartError when another has it.
class FolderLock {
  public:
    explicit FolderLock(const std::filesystem::path& folder);

  private:
    FileHandle file;
};

}  // namespace service
