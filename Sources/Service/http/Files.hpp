#pragma once

#include <httplib.h>

#include <filesystem>
#include <string>

namespace service {

// Answers with a file's content, read piece by piece as the client takes it. Throws std::system_error.
void SendFile(httplib::Response& response, const std::filesystem::path& file, const std::string& type);

// The page's files: "/" and folders stand for their index.html.
class WebRoot {
  public:
    explicit WebRoot(const std::filesystem::path& folder);

    // Throws HttpError 404 when there is no such file below the folder.
    void Send(const std::string& path, httplib::Response& response) const;

  private:
    std::filesystem::path folder;
};

}  // namespace service
