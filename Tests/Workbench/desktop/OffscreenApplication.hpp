#pragma once

#include <stdlib.h>

#include <QApplication>
#include <array>
#include <memory>
#include <string>

namespace workbench {

// A screen that nobody sees. Declared before what needs a running QApplication.
struct OffscreenApplication {
    OffscreenApplication() {
        if (qApp != nullptr) return;
        setenv("QT_QPA_PLATFORM", "offscreen", 0);
        application = std::make_unique<QApplication>(argumentCount, arguments.data());
    }
    int argumentCount = 1;
    std::string name = "test";
    std::array<char*, 2> arguments{name.data(), nullptr};
    std::unique_ptr<QApplication> application;
};

}  // namespace workbench
