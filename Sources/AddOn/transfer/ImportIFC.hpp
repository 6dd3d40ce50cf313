#pragma once

#include "Runnable.hpp"
#include "UniString.hpp"

#include <cstddef>

/// One download of one model from the service, run once on a thread of its own. A file that is there already
/// is kept, and nothing is fetched. An answer of any status becomes the file; a transfer that failed leaves
/// none.
///
/// All downloads into one folder receive into the same temporary file, so they take turns: one that stalls
/// holds up those behind it.
class ImportIFC : public GS::Runnable {
  public:
    /// The bearer token of the person who is signed in, the service's id of the model, and the whole path of
    /// its file.
    ImportIFC(const GS::UniString& token, const GS::UniString& modelId, const GS::UniString& targetPath);

    void Run() override;

    /// The request's address. The id is not escaped.
    GS::UniString GetEndpoint() const;

    /// The header lines of the request.
    GS::UniString GetClientHeader() const;
    GS::UniString GetTokenHeader() const;

    /// Where the body goes until it is whole: "TempIfcFile.ifc" beside the target.
    GS::UniString GetTempFilePath() const;

  private:
    void GetIfcStream() const;

    GS::UniString token;
    GS::UniString modelId;
    GS::UniString targetPath;
};

/// libcurl's write callback; `file` is a std::FILE. Returns the number of bytes written: with fewer than
/// there are the transfer ends with an error.
std::size_t write_data(void* contents, std::size_t size, std::size_t nmemb, void* file);
