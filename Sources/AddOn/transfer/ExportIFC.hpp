#pragma once

#include "transfer/BaseExport.hpp"

/// Uploads an exported model into a folder of the service. The palette, when there still is one, is told of
/// every answer as completion, whatever its status, and of a failed transfer as failure.
class ExportIFC : public BaseExport {
  public:
    ExportIFC(const GS::UniString& token, const GS::UniString& projectId, const GS::UniString& folderId,
              const GS::UniString& filePath);

    void Run() override;
    GS::UniString GetEndPoint() const override;

  private:
    GS::UniString folderId;
    GS::UniString filePath;
};
