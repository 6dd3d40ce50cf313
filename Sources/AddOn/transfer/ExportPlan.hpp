#pragma once

#include "transfer/BaseExport.hpp"

/// Uploads a plan document into a folder of the service and removes the local file, so that the plan's next
/// version can bear its name. The palette, when there still is one, is told of an accepted upload as
/// completion and of every other answer as failure; of a failed transfer nobody is told.
class ExportPlan : public BaseExport {
  public:
    ExportPlan(const GS::UniString& token, const GS::UniString& projectId, const GS::UniString& folderId,
               const GS::UniString& filePath);

    void Run() override;
    GS::UniString GetEndPoint() const override;

  private:
    GS::UniString folderId;
    GS::UniString filePath;
};
