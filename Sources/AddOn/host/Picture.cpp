#include "host/Picture.hpp"

namespace {

template <typename Format>
GSErrCode Save(const IO::Location& location, API_FTypeID type, Format& format) {
    IO::Location file = location;
    API_FileSavePars pars = {};
    pars.fileTypeID = type;
    pars.file = &file;
    return ACAPI_Automate(APIDo_SaveID, &pars, &format);
}

}  // namespace

GSErrCode SaveViewAsPng(const IO::Location& location) {
    API_SavePars_Picture picture = {};
    picture.colorDepth = APIColorDepth_MiCP;
    picture.crop = true;
    picture.keepSelectionHighlight = true;
    return Save(location, APIFType_PNGFile, picture);
}

GSErrCode SavePlanAsPicture(const IO::Location& location, PictureFormat format) {
    const bool isPng = format == PictureFormat::png;
    API_SavePars_Picture picture = {};
    picture.colorDepth = isPng ? APIColorDepth_MiCP : APIColorDepth_MiC;
    picture.view2D = true;
    picture.crop = true;
    return Save(location, isPng ? APIFType_PNGFile : APIFType_JPEGFile, picture);
}

GSErrCode SavePlanAsPdf(const IO::Location& location, double width, double height) {
    constexpr double millimetres = 1000;
    API_SavePars_Pdf page = {};
    page.sizeX = static_cast<float>(width * millimetres);
    page.sizeY = static_cast<float>(height * millimetres);
    return Save(location, APIFType_PdfFile, page);
}
