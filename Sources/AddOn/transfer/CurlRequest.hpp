#pragma once

#include <curl/curl.h>

/// One libcurl handle with the header list and the form that it points to. They go in the order in which
/// nothing still refers to what is gone: form, headers, handle.
class CurlRequest {
  public:
    /// Asks libcurl for a handle; there may be none.
    CurlRequest();
    ~CurlRequest();
    CurlRequest(const CurlRequest&) = delete;
    CurlRequest& operator=(const CurlRequest&) = delete;

    explicit operator bool() const { return handle != nullptr; }
    CURL* Handle() const { return handle; }

    void AddHeader(const char* line);
    curl_slist* Headers() const { return headers; }

    /// Adds a part that libcurl reads from the file while it sends.
    void AddFilePart(const char* name, const char* filePath);
    curl_mime* Form() const { return form; }

  private:
    CURL* handle = nullptr;
    curl_slist* headers = nullptr;
    curl_mime* form = nullptr;
};
