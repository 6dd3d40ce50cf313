#pragma once

#include "transfer/BaseExport.hpp"

/// Uploads the picture of a viewpoint. The palette, when there still is one, gets every answer as the image's
/// id, whatever its status; of a failed transfer nobody is told.
class ExportSnapshot : public BaseExport {
  public:
    ExportSnapshot(const GS::UniString& token, const GS::UniString& projectId, const GS::UniString& filePath);

    void Run() override;
    GS::UniString GetEndPoint() const override;

  private:
    GS::UniString filePath;
};
