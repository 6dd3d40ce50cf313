#include "HostKit/Resources/Resources.hpp"

#include <algorithm>
#include <fstream>
#include <iterator>
#include <stdexcept>

#include "HostKit/Resources/GrcParser.hpp"

namespace fs = std::filesystem;

namespace hostkit {

namespace {

std::vector<fs::path> GrcFiles(const fs::path& folder) {
    std::error_code error;
    std::vector<fs::path> files;
    for (const fs::directory_entry& entry : fs::directory_iterator(folder, error)) {
        if (entry.path().extension() == ".grc") files.push_back(entry.path());
    }
    if (error) throw std::runtime_error(folder.string() + ": " + error.message());
    std::sort(files.begin(), files.end());
    return files;
}

std::string ReadFile(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    std::string text((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
    if (!file) throw std::runtime_error(path.string() + ": cannot be read");
    return text;
}

}  // namespace

Resources Resources::Load(const fs::path& folder, const std::string& language) {
    Resources resources;
    for (const fs::path& part : {folder / "RFIX", folder / ("R" + language)}) {
        for (const fs::path& file : GrcFiles(part))
            resources.AddText(ReadFile(file), file.string());
    }
    return resources;
}

void Resources::AddText(const std::string& text, const std::string& name) {
    GrcParser(text, name, strings, dialogs).Parse();
}

GS::UniString Resources::String(GSResID id, Int32 index) const {
    if (index < 1 || index > StringCount(id)) return GS::EmptyUniString;
    return strings.at(id)[static_cast<std::size_t>(index - 1)];
}

Int32 Resources::StringCount(GSResID id) const {
    const auto found = strings.find(id);
    return found == strings.end() ? 0 : static_cast<Int32>(found->second.size());
}

const DialogResource* Resources::Dialog(GSResID id) const {
    const auto found = dialogs.find(id);
    return found == dialogs.end() ? nullptr : &found->second;
}

}  // namespace hostkit
