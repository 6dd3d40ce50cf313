#pragma once

#include "APIdefs_Base.h"
#include "Array.hpp"
#include "FourCharacters.hpp"
#include "Location.hpp"

enum API_AutomateID : Int32 {
    APIDo_OpenID = hostkit::FourCharacters("OPEN"),
    APIDo_SaveID = hostkit::FourCharacters("SAVE"),
    APIDo_PublishID = hostkit::FourCharacters("PUBL"),
    APIDo_ShowAllIn3DID = hostkit::FourCharacters("SA3D"),
    APIDo_ShowSelectionIn3DID = hostkit::FourCharacters("SS3D"),
    APIDo_ZoomID = hostkit::FourCharacters("ZOOM"),
    APIDo_ZoomToElementsID = hostkit::FourCharacters("ZTEL"),
    APIDo_ChangeWindowID = hostkit::FourCharacters("CHWD")
};

enum API_FTypeID {
    APIFType_None = 0,
    APIFType_PNGFile = 22,
    APIFType_JPEGFile = 25,
    APIFType_IfcFile = 41,
    APIFType_PdfFile = 54
};

// "file" stays the caller's.
struct API_FileSavePars {
    API_FTypeID fileTypeID;
    Int32 filler_1;
    IO::Location* file;
    Int32 filler_2[15];
};

// "guid": of the publisher set; "path": the folder that the files go into, the caller's.
struct API_PublishPars {
    API_Guid guid;
    IO::Location* path;
    Int32 filler_1;
};

// All zero besides "file": the file is opened without a library. Both locations stay the caller's.
struct API_FileOpenPars {
    API_FTypeID fileTypeID;
    bool libGiven;
    bool useStoredLib;
    bool enableSaveAlert;
    bool filler_1;
    IO::Location* file;
    IO::Location* archiveLib;
};

// The reference is the caller's to kill.
struct API_IFCTranslatorIdentifier {
    GSHandle innerReference = nullptr;
    GS::UniString name;
};

enum API_IfcTypeID { API_IFC = 0, API_IFCXML, API_IFCZIP };

enum API_ElementsToIfcExportID {
    API_EntireProject = 1,
    API_VisibleElementsOnAllStories,
    API_AllElementsOnCurrentStorey,
    API_VisibleElementsOnCurrentStorey,
    API_SelectedElementsOnly,
    API_FilteredElements
};

struct API_SavePars_Ifc {
    API_IfcTypeID subType = API_IFC;
    API_IFCTranslatorIdentifier translatorIdentifier;
    API_ElementsToIfcExportID elementsToIfcExport = {};
    const GS::Array<API_Guid>* elementsSet = nullptr;
    bool includeBoundingBoxGeometry = false;
    void* filler_1 = nullptr;
    void* filler_2 = nullptr;
};

enum API_ColorDepthID : Int32 {
    APIColorDepth_FromSourceImage = -1,
    APIColorDepth_BW,
    APIColorDepth_16C,
    APIColorDepth_256C,
    APIColorDepth_16G,
    APIColorDepth_256G,
    APIColorDepth_4C,
    APIColorDepth_4G,
    APIColorDepth_ThC,
    APIColorDepth_MiC,
    APIColorDepth_MiCP,
    APIColorDepth_64KC,
    APIColorDepth_TC24,
    APIColorDepth_TC32
};

struct API_SavePars_Picture {
    API_ColorDepthID colorDepth;
    bool dithered;
    bool view2D;
    bool crop;
    bool keepSelectionHighlight;
    Int32 filler_2[8];
};

// Millimetres, of a plan those of the model: the application reduces it to a usual scale. A size of 0 leaves
// it to the application.
struct API_SavePars_Pdf {
    float leftMargin, topMargin, rightMargin, bottomMargin;
    float sizeX, sizeY;
    Int32 filler_1[4];
};
