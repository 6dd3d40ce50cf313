#include "transfer/BaseExport.hpp"

#include "transfer/CurlRequest.hpp"
#include "transfer/ResponseBuffer.hpp"
#include "transfer/ServiceHeaders.hpp"

BaseExport::BaseExport(const GS::UniString& token, const GS::UniString& projectId)
    : token(token), projectId(projectId) {}

GS::UniString BaseExport::GetEndPoint() const {
    return GS::UniString();
}

GS::UniString BaseExport::GetTokenHeader() const {
    return MakeTokenHeader(token);
}

GS::UniString BaseExport::GetClientHeader() const {
    return MakeClientHeader();
}

std::optional<BaseExport::Outcome> BaseExport::Post(const GS::UniString& filePath) const {
    ResponseBuffer response;
    CurlRequest request;
    if (!request) return std::nullopt;

    CURL* const curl = request.Handle();
    curl_easy_setopt(curl, CURLOPT_CUSTOMREQUEST, "POST");
    curl_easy_setopt(curl, CURLOPT_URL, GetEndPoint().ToCStr().Get());
    curl_easy_setopt(curl, CURLOPT_FOLLOWLOCATION, 1L);
    curl_easy_setopt(curl, CURLOPT_DEFAULT_PROTOCOL, "https");

    request.AddHeader(GetClientHeader().ToCStr().Get());
    request.AddHeader(GetTokenHeader().ToCStr().Get());
    curl_easy_setopt(curl, CURLOPT_HTTPHEADER, request.Headers());

    request.AddFilePart("file", filePath.ToCStr().Get());
    curl_easy_setopt(curl, CURLOPT_MIMEPOST, request.Form());

    curl_easy_setopt(curl, CURLOPT_WRITEFUNCTION, cb);
    curl_easy_setopt(curl, CURLOPT_WRITEDATA, &response);

    Outcome outcome;
    outcome.transferred = curl_easy_perform(curl) == CURLE_OK;
    curl_easy_getinfo(curl, CURLINFO_RESPONSE_CODE, &outcome.status);
    if (response.memory != nullptr) outcome.body = GS::UniString(response.memory);
    return outcome;
}
