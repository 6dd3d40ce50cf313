#pragma once

#include "Workbench/exchange/Exchange.hpp"

namespace workbench {

/// Picks the person's language: `say("Open...", "Öffnen...")`.
struct Say {
    Language language = Language::english;

    const char* operator()(const char* english, const char* german) const {
        return language == Language::german ? german : english;
    }
};

}  // namespace workbench
