#include "host/Ifc.hpp"

#include "BM.hpp"

IfcExportTranslators::~IfcExportTranslators() {
    for (API_IFCTranslatorIdentifier& translator : translators) {
        BMKillHandle(&translator.innerReference);
    }
}

GSErrCode IfcExportTranslators::Load() {
    return ACAPI_IFC_GetIFCExportTranslatorsList(translators);
}

GSErrCode OpenProjectAsIfc(const IO::Location& location) {
    IO::Location file = location;
    API_FileOpenPars pars = {};
    pars.fileTypeID = APIFType_IfcFile;
    pars.file = &file;
    return ACAPI_Automate(APIDo_OpenID, &pars);
}

GSErrCode SaveProjectAsIfc(const IO::Location& location, const API_SavePars_Ifc& ifcPars) {
    IO::Location file = location;
    API_FileSavePars filePars = {};
    filePars.fileTypeID = APIFType_IfcFile;
    filePars.file = &file;
    API_SavePars_Ifc pars = ifcPars;
    return ACAPI_Automate(APIDo_SaveID, &filePars, &pars);
}
