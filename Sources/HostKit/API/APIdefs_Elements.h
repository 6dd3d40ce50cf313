#pragma once

#include <memory>

#include "APIdefs_Base.h"
#include "Definitions.hpp"

enum API_ElemTypeID {
    API_ZombieElemID = 0,
    API_WallID,
    API_ColumnID,
    API_BeamID,
    API_WindowID,
    API_DoorID,
    API_ObjectID,
    API_LampID,
    API_SlabID,
    API_RoofID,
    API_MeshID
};

enum API_ElemVariationID { APIVarId_Generic = 0 };

// All zero: every type.
struct API_ElemType {
    API_ElemType() = default;
    API_ElemType(API_ElemTypeID type) : typeID(type), variationID(APIVarId_Generic), classID(APINULLGuid) {}

    API_ElemTypeID typeID;
    API_ElemVariationID variationID;
    API_Guid classID;
};

struct API_Elem_Head {
    API_ElemType type;
    API_Guid guid;
    API_AttributeIndex layer;
    short floorInd;
    UInt64 modiStamp;

    // The application's own: the project that the record was read from, which stays alive with it.
    std::shared_ptr<const void> origin;
};

union API_Element {
    API_Elem_Head header;

    API_Element() : header() {}
    API_Element(const API_Element& other) : header(other.header) {}
    API_Element& operator=(const API_Element& other) {
        header = other.header;
        return *this;
    }
    ~API_Element() { header.~API_Elem_Head(); }
};

// What an element has besides its record.
struct API_ElementMemo {
    GSHandle filler_1[8];
};

struct API_ElemInfo3D {
    UInt32 fElemIdx, fBodyIdx, lElemIdx, lBodyIdx;
    Int32 fbody, lbody, flight, llight;
    Int32 filler_1[2];
    API_Box3D bounds;
};

using API_ElemFilterFlags = GSFlags;

enum : API_ElemFilterFlags {
    APIFilt_None = 0,
    APIFilt_IsEditable = 1,
    APIFilt_OnVisLayer = 2,
    APIFilt_OnActFloor = 4,
    APIFilt_In3D = 8,
    APIFilt_InMyWorkspace = 0x10,
    APIFilt_IsIndependent = 0x20,
    APIFilt_OnActLayout = 0x40,
    APIFilt_InCroppedView = 0x80,
    APIFilt_IsOfVariation = 0x100,
    APIFilt_HasAccessRight = 0x200,
    APIFilt_IsVisibleByRenovation = 0x400,
    APIFilt_IsOverridden = 0x800,
    APIFilt_IsInStructureDisplay = 0x1000
};

enum API_NeigID : Int32 { APINeig_None = 0, APINeig_Element = 1 };

enum API_NeigElemPartID : Int32 { APINeigElemPart_None = 0 };

// A pick at an element.
struct API_Neig {
    API_Neig() = default;
    API_Neig(const API_Guid& guid) : neigID(APINeig_Element), guid(guid) {}

    API_NeigID neigID = APINeig_None;
    API_Guid guid = APINULLGuid;
    Int32 inIndex = 0;
    Int32 flags = 0;
    API_NeigElemPartID elemPartType = APINeigElemPart_None;
    UInt32 elemPartIndex = 0;
    short subType = 0;
    short nodeType = 0;
    UInt32 supplUnId = 0;
};

enum API_SelTypeID : Int32 {
    API_SelEmpty = 0,
    API_SelElems,
    API_MarqueePoly,
    API_MarqueeHorBox,
    API_MarqueeRotBox
};

enum API_SelRelativePosID : Int32 { API_InsidePartially = 0, API_InsideEntirely, API_OutsideEntirely };

// A marquee. The coordinates are the caller's to kill.
struct API_Region {
    API_Box box;
    double boxRotAngle;
    Int32 nCoords;
    Int32 filler_1;
    API_Coord** coords;
};

struct API_SelectionInfo {
    API_SelTypeID typeID;
    Int32 sel_nElem;
    Int32 sel_nElemEdit;
    Int32 filler_1[3];
    bool filler_2[3];
    bool multiStory;
    Int32 filler_3;
    API_Region marquee;
};
