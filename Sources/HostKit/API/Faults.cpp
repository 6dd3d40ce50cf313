#include "HostKit/API/Faults.hpp"

namespace hostkit {

void Faults::FailCall(std::uint64_t nth, GSErrCode code) {
    FailCall({}, nth, code);
}

void Faults::FailCall(const std::string& operation, std::uint64_t nth, GSErrCode code) {
    if (nth == 0) return;
    const std::lock_guard lock(mutex);
    faults.push_back({operation, nth, code});
    armed = true;
}

void Faults::Clear() {
    const std::lock_guard lock(mutex);
    faults.clear();
    armed = false;
}

GSErrCode Faults::Ask(std::string_view function, std::string_view constant) {
    callsMade.fetch_add(1, std::memory_order_relaxed);
    if (!armed.load(std::memory_order_relaxed)) return NoError;

    const std::lock_guard lock(mutex);
    GSErrCode code = NoError;
    std::erase_if(faults, [&](Fault& fault) {
        const bool concerned =
            fault.operation.empty() || fault.operation == function || fault.operation == constant;
        if (!concerned || --fault.callsLeft > 0) return false;
        if (code == NoError) code = fault.code;
        return true;
    });
    armed = !faults.empty();
    return code;
}

}  // namespace hostkit
