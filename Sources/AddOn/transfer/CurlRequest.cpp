#include "transfer/CurlRequest.hpp"

#include <mutex>

namespace {

/// The first handle initialises libcurl, which is not safe to do from several threads in every version.
CURL* InitHandle() {
    static std::mutex initGuard;
    const std::lock_guard<std::mutex> lock(initGuard);
    return curl_easy_init();
}

}  // namespace

CurlRequest::CurlRequest() : handle(InitHandle()) {}

CurlRequest::~CurlRequest() {
    curl_mime_free(form);
    curl_slist_free_all(headers);
    curl_easy_cleanup(handle);
}

void CurlRequest::AddHeader(const char* line) {
    if (curl_slist* const longer = curl_slist_append(headers, line)) headers = longer;
}

void CurlRequest::AddFilePart(const char* name, const char* filePath) {
    if (form == nullptr) form = curl_mime_init(handle);
    curl_mimepart* const part = curl_mime_addpart(form);
    curl_mime_name(part, name);
    curl_mime_filedata(part, filePath);
}
