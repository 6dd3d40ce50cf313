#pragma once

#include "Definitions.hpp"
#include "FourCharacters.hpp"

enum API_GoodiesID : Int32 {
    APIAny_InitMDCLParameterListID = hostkit::FourCharacters("ICLP"),
    APIAny_AddMDCLParameterID = hostkit::FourCharacters("ACLP"),
    APIAny_FreeMDCLParameterListID = hostkit::FourCharacters("FCLP")
};

// An add-on.
struct API_ModulID {
    Int32 developerID;
    Int32 localID;
};

enum API_MDCLParameterTypeID : Int32 { MDCLPar_string, MDCLPar_int, MDCLPar_float, MDCLPar_ptr };

// A named value for another add-on's command; its type says which member counts. The texts are copied when
// the parameter is added.
struct API_MDCLParameter {
    Int32 index;
    const char* name;
    Int32 type;
    bool modified;
    bool filler_1[3];
    union {
        Int32 int_par;
        void* ptr_par;
    };
    double float_par;
    const char* string_par;
};
