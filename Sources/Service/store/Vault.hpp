#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <string>
#include <string_view>

#include "Service/FileHandle.hpp"

namespace service {

// A file on its way into the vault. Unless kept, it leaves nothing behind.
class Incoming {
  public:
    Incoming(const std::filesystem::path& arriving, const std::filesystem::path& stored);
    ~Incoming();
    Incoming(const Incoming&) = delete;
    Incoming& operator=(const Incoming&) = delete;

    const std::string& Id() const { return id; }
    int64_t Size() const { return size; }

    // Throws StorageFull or std::system_error, like Store().
    void Write(std::string_view data);

    // Puts the whole file in its place, where it survives a power cut.
    void Store();

    // Called once the records tell of the file.
    void Keep() { kept = true; }

  private:
    void Flush();

    const std::string id;
    const std::filesystem::path arriving;
    const std::filesystem::path stored;
    FileHandle file;
    std::string buffer;
    int64_t size = 0;
    bool kept = false;
};

// The uploaded files, under names of the service's own.
class Vault {
  public:
    explicit Vault(const std::filesystem::path& dataDir);

    // Removes what an earlier run left half done: arriving files, and stored ones that no record tells of.
    void Sweep(const std::function<bool(const std::string& id)>& isKnown) const;

    Incoming Receive() const { return {arriving, stored}; }
    std::filesystem::path PathOf(const std::string& id) const { return stored / id; }

    // Removes a file that no record tells of any more; what cannot be removed now, the next Sweep() finds.
    void Remove(const std::string& id) const;

  private:
    const std::filesystem::path arriving;
    const std::filesystem::path stored;
};

}  // namespace service
