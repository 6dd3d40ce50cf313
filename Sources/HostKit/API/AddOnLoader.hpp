#pragma once

#include "ACAPinc.h"

namespace hostkit {

struct AddOnEntryPoints {
    API_AddonType (*checkEnvironment)(API_EnvirParams*);
    GSErrCode (*registerInterface)();
    GSErrCode (*initialize)();
    GSErrCode (*freeData)();
};

// Starts an add-on in the current session: environment check, registration, initialisation. After an error
// the add-on has failed and nothing of it stays registered. GENERAL: there is no session, or the add-on does
// not want to be registered.
GSErrCode LoadAddOn(const AddOnEntryPoints& entryPoints);

// Calls FreeData of the add-on and forgets what it registered.
GSErrCode UnloadAddOn(const AddOnEntryPoints& entryPoints);

// The add-on that is linked into this program.
inline AddOnEntryPoints LinkedAddOn() {
    return {&CheckEnvironment, &RegisterInterface, &Initialize, &FreeData};
}
inline GSErrCode LoadAddOn() {
    return LoadAddOn(LinkedAddOn());
}
inline GSErrCode UnloadAddOn() {
    return UnloadAddOn(LinkedAddOn());
}

}  // namespace hostkit
