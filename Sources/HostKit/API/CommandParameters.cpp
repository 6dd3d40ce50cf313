#include "HostKit/API/CommandParameters.hpp"

namespace hostkit {

GSErrCode CommandParameters::Add(const API_MDCLParameter& parameter) {
    if (parameter.name == nullptr || *parameter.name == '\0') return APIERR_BADPARS;
    decltype(values)::mapped_type value;
    switch (parameter.type) {
        case MDCLPar_string:
            if (parameter.string_par == nullptr) return APIERR_BADPARS;
            value = std::string(parameter.string_par);
            break;
        case MDCLPar_int:
            value = parameter.int_par;
            break;
        case MDCLPar_float:
            value = parameter.float_par;
            break;
        case MDCLPar_ptr:
            value = parameter.ptr_par;
            break;
        default:
            return APIERR_BADPARS;
    }
    return values.emplace(parameter.name, std::move(value)).second ? NoError : APIERR_BADNAME;
}

const std::string* CommandParameters::FindText(const std::string& name) const {
    const auto found = values.find(name);
    return found == values.end() ? nullptr : std::get_if<std::string>(&found->second);
}

void* CommandParameters::FindPointer(const std::string& name) const {
    const auto found = values.find(name);
    const auto* pointer = found == values.end() ? nullptr : std::get_if<void*>(&found->second);
    return pointer == nullptr ? nullptr : *pointer;
}

GSHandle CommandParameterLists::Create() {
    GSHandle handle = BMAllocateHandle(0);
    if (handle != nullptr) lists[handle] = {};
    return handle;
}

CommandParameters* CommandParameterLists::Find(GSHandle handle) {
    const auto found = lists.find(handle);
    return found == lists.end() ? nullptr : &found->second;
}

bool CommandParameterLists::Kill(GSHandle* handle) {
    if (lists.erase(*handle) == 0) return false;
    BMKillHandle(handle);
    return true;
}

}  // namespace hostkit
