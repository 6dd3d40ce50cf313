#pragma once

#include <gtest/gtest.h>
#include <stdlib.h>

#include <filesystem>
#include <ostream>
#include <string>

#include "HostKit/API/Session.hpp"
#include "HostKit/DG/RecordingDriver.hpp"
#include "HostKit/GSRoot/Text.hpp"

namespace GS {

inline void PrintTo(const UniString& text, std::ostream* out) {
    *out << '"' << hostkit::ToUtf8(text) << '"';
}

}  // namespace GS

// A folder of the test's own, gone with it.
class TemporaryFolder {
  public:
    TemporaryFolder() {
        std::string pattern = (std::filesystem::temp_directory_path() / "hostkit-XXXXXX").string();
        if (mkdtemp(pattern.data()) == nullptr) throw std::runtime_error("no temporary folder");
        path = pattern;
    }
    ~TemporaryFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(path, ignored);
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    const std::filesystem::path& Path() const { return path; }

  private:
    std::filesystem::path path;
};

constexpr auto addOnText = R"(
'STR#' 32500 "Menu" { "Panel" }
'STR#' 32501 "Submenu" { "Title" "First" "Second" }
'GDLG' 32500 Palette | close | grow 0 0 300 400 "Panel" { Browser 0 0 300 400 }
'GDLG' 32510 Modal | noGrow 0 0 200 200 "Choice" {
    Button 110 170 80 20 LargePlain "OK"  SingleSelList 10 10 180 150 SmallPlain  Button 10 170 80 20 "More"
}
)";

inline hostkit::Resources AddOnResources() {
    hostkit::Resources resources;
    resources.AddText(addOnText, "addon.grc");
    return resources;
}
