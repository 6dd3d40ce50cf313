#pragma once

#include <atomic>
#include <cstdint>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

#include "Definitions.hpp"

namespace hostkit {

// Makes chosen host calls fail, each fault once. Any thread may plan, and any may call.
class Faults {
  public:
    // The n-th host call from now on, counted from 1, fails with the code and does nothing.
    void FailCall(std::uint64_t nth, GSErrCode code);

    // The same, counting only calls of this operation: a function ("ACAPI_Element_Get") or, for functions
    // that dispatch by a code, also the code's constant ("APIDo_SaveID").
    void FailCall(const std::string& operation, std::uint64_t nth, GSErrCode code);

    // Forgets the faults that have not struck.
    void Clear();

    // Host calls made since the session began, failed ones included.
    std::uint64_t CallsMade() const { return callsMade.load(std::memory_order_relaxed); }

    // Counts a call and answers its fault: NoError to go ahead. "constant" may be empty.
    GSErrCode Ask(std::string_view function, std::string_view constant = {});

  private:
    struct Fault {
        std::string operation;  // empty: any
        std::uint64_t callsLeft;
        GSErrCode code;
    };

    std::atomic<std::uint64_t> callsMade = 0;
    std::atomic<bool> armed = false;
    std::mutex mutex;
    std::vector<Fault> faults;
};

}  // namespace hostkit
