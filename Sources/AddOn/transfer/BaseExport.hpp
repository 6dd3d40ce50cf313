#pragma once

#include "Runnable.hpp"
#include "UniString.hpp"

#include <optional>

/// One upload of one file to the service, run once on a thread of its own.
class BaseExport : public GS::Runnable {
  public:
    /// The bearer token of the person who is signed in, and the service's id of the project.
    BaseExport(const GS::UniString& token, const GS::UniString& projectId);

    /// The request's address.
    virtual GS::UniString GetEndPoint() const;

    /// The header lines of the request.
    GS::UniString GetTokenHeader() const;
    GS::UniString GetClientHeader() const;

  protected:
    struct Outcome {
        bool transferred = false;  // the service answered, whatever the status
        long status = 0;           // HTTP's
        GS::UniString body;

        bool IsAccepted() const { return transferred && status >= 200 && status <= 299; }
    };

    /// Posts the file as the form's one part "file" and waits for the answer, without a time limit. No value
    /// when there is no request at all.
    std::optional<Outcome> Post(const GS::UniString& filePath) const;

  private:
    GS::UniString token;
    GS::UniString projectId;
};
