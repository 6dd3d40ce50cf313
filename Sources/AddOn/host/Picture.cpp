#include "host/Picture.hpp"

GSErrCode SaveViewAsPng(const IO::Location& location) {
    IO::Location file = location;
    API_FileSavePars filePars = {};
    filePars.fileTypeID = APIFType_PNGFile;
    filePars.file = &file;
    API_SavePars_Picture picture = {};
    picture.colorDepth = APIColorDepth_MiCP;
    picture.crop = true;
    picture.keepSelectionHighlight = true;
    return ACAPI_Automate(APIDo_SaveID, &filePars, &picture);
}
