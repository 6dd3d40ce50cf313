#pragma once

#include "transfer/BaseExport.hpp"

#include <memory>

class PublishRun;

/// Uploads one file of a run of publisher set items. The palette, when there still is one, is told that it
/// has ended, whatever came of it; the document's id, if the service gave one, is the run's.
class ExportPublishSet : public BaseExport {
  public:
    ExportPublishSet(const GS::UniString& token, const GS::UniString& projectId,
                     const std::shared_ptr<PublishRun>& run, UIndex item);

    void Run() override;
    GS::UniString GetEndPoint() const override;

    /// The id of the first document that the service's answer lists; empty for every other answer.
    static GS::UniString GetDocumentId(const GS::UniString& body);

  private:
    std::shared_ptr<PublishRun> run;
    UIndex item;
};
