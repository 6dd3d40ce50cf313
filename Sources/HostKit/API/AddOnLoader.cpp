#include "HostKit/API/AddOnLoader.hpp"

#include "HostKit/API/Session.hpp"

namespace hostkit {

namespace {

GSErrCode Start(const AddOnEntryPoints& entryPoints, Session& session) {
    Registry& registry = session.GetRegistry();
    API_EnvirParams envir;
    session.GetHost().ApplicationInfo(envir.serverInfo);
    const API_AddonType type = entryPoints.checkEnvironment(&envir);
    if (type != APIAddon_Normal && type != APIAddon_Preload) return APIERR_GENERAL;
    registry.SetAddOnInfo(envir.addOnInfo);

    registry.SetStage(Registry::Stage::registering);
    if (const GSErrCode error = entryPoints.registerInterface()) return error;
    registry.SetStage(Registry::Stage::initialising);
    if (const GSErrCode error = entryPoints.initialize()) return error;
    registry.SetStage(Registry::Stage::running);
    return NoError;
}

}  // namespace

GSErrCode LoadAddOn(const AddOnEntryPoints& entryPoints) {
    Session* session = Session::Current();
    if (session == nullptr) return APIERR_GENERAL;
    const GSErrCode error = Start(entryPoints, *session);
    if (error != NoError) session->GetRegistry().Clear();
    return error;
}

GSErrCode UnloadAddOn(const AddOnEntryPoints& entryPoints) {
    Session* session = Session::Current();
    if (session == nullptr) return APIERR_GENERAL;
    const GSErrCode error = entryPoints.freeData();
    session->GetRegistry().Clear();
    return error;
}

}  // namespace hostkit
