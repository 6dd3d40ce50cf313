#include "host/CommandParameters.hpp"

#include "BM.hpp"

namespace {

constexpr std::size_t maxBytes = 512;

}  // namespace

CommandParameterList::~CommandParameterList() {
    if (list == nullptr) return;
    // What the host does not take back is still this one's memory.
    if (ACAPI_Goodies(APIAny_FreeMDCLParameterListID, &list) != NoError) BMKillHandle(&list);
}

GSErrCode CommandParameterList::Create() {
    return ACAPI_Goodies(APIAny_InitMDCLParameterListID, &list);
}

GSErrCode CommandParameterList::AddText(const char* name, const GS::UniString& text) {
    texts.push_back(std::string(text.ToCStr().Get()).substr(0, maxBytes));
    API_MDCLParameter parameter = {};
    parameter.name = name;
    parameter.type = MDCLPar_string;
    parameter.string_par = texts.back().c_str();
    return ACAPI_Goodies(APIAny_AddMDCLParameterID, list, &parameter);
}

GSErrCode CommandParameterList::AddReference(const char* name, const void* value) {
    API_MDCLParameter parameter = {};
    parameter.name = name;
    parameter.type = MDCLPar_ptr;
    parameter.ptr_par = const_cast<void*>(value);
    return ACAPI_Goodies(APIAny_AddMDCLParameterID, list, &parameter);
}
