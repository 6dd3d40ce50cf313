#include "transfer/ImportIFC.hpp"

#include "Config.hpp"
#include "transfer/CurlRequest.hpp"
#include "transfer/ServiceHeaders.hpp"

#include "FileSystem.hpp"

#include <cstdio>
#include <memory>
#include <mutex>

namespace {

/// Held from opening the temporary file to its renaming, so that no model gets another's bytes.
std::mutex& TempFileTurn() {
    static std::mutex turn;
    return turn;
}

/// Performs the request with its body written to the file; false when the file or the transfer fails.
bool Receive(CURL* curl, const GS::UniString& path) {
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen(path.ToCStr().Get(), "wb"),
                                                               std::fclose);
    if (file == nullptr) return false;
    // Unbuffered: a full disk must fail the transfer, and not only the closing of the file.
    std::setvbuf(file.get(), nullptr, _IONBF, 0);

    curl_easy_setopt(curl, CURLOPT_WRITEFUNCTION, write_data);
    curl_easy_setopt(curl, CURLOPT_WRITEDATA, file.get());
    return curl_easy_perform(curl) == CURLE_OK;
}

}  // namespace

ImportIFC::ImportIFC(const GS::UniString& token, const GS::UniString& modelId,
                     const GS::UniString& targetPath)
    : token(token), modelId(modelId), targetPath(targetPath) {}

GS::UniString ImportIFC::GetEndpoint() const {
    return GS::UniString::Printf("%s/resource/%s", apiBaseUrl, modelId.ToCStr().Get());
}

GS::UniString ImportIFC::GetClientHeader() const {
    return MakeClientHeader();
}

GS::UniString ImportIFC::GetTokenHeader() const {
    return MakeTokenHeader(token);
}

GS::UniString ImportIFC::GetTempFilePath() const {
    const UIndex slash = targetPath.FindLast(u'/');
    return (slash == MaxUIndex ? GS::UniString() : targetPath.GetPrefix(slash + 1)) + "TempIfcFile.ifc";
}

void ImportIFC::Run() {
    bool isThere = false;
    const GSErrCode error = IO::fileSystem.Contains(IO::Location(targetPath), &isThere);
    if (error != NoError || !isThere) GetIfcStream();
}

void ImportIFC::GetIfcStream() const {
    CurlRequest request;
    if (!request) return;

    CURL* const curl = request.Handle();
    curl_easy_setopt(curl, CURLOPT_URL, GetEndpoint().ToCStr().Get());
    curl_easy_setopt(curl, CURLOPT_FOLLOWLOCATION, 1L);
    curl_easy_setopt(curl, CURLOPT_DEFAULT_PROTOCOL, "https");

    request.AddHeader(GetClientHeader().ToCStr().Get());
    request.AddHeader(GetTokenHeader().ToCStr().Get());
    curl_easy_setopt(curl, CURLOPT_HTTPHEADER, request.Headers());

    const IO::Location temporary(GetTempFilePath());
    GS::UniString path;
    if (temporary.ToPath(&path) != NoError) return;

    const std::lock_guard<std::mutex> turn(TempFileTurn());
    if (!Receive(curl, path)) return;
    IO::Name name;
    if (IO::Location(targetPath).GetLastLocalName(&name) == NoError) IO::fileSystem.Rename(temporary, name);
}

std::size_t write_data(void* contents, std::size_t size, std::size_t nmemb, void* file) {
    return std::fwrite(contents, size, nmemb, static_cast<std::FILE*>(file));
}
