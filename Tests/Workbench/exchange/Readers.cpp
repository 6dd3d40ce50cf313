#include "Workbench/exchange/Readers.hpp"

#include <gtest/gtest.h>

#include <assimp/scene.h>
#include <assimp/Importer.hpp>
#include <cstdio>
#include <cstring>
#include <memory>

namespace workbench {
namespace {

constexpr size_t globalIdLength = 22;

/// assimp names a node after its product and the GlobalId.
void Collect(const aiNode& node, std::string inherited, std::set<std::string>& found) {
    const std::string name = node.mName.C_Str();
    if (name.size() >= globalIdLength && name.starts_with("Ifc"))
        inherited = name.substr(name.size() - globalIdLength);
    if (node.mNumMeshes > 0) found.insert(inherited);
    for (unsigned i = 0; i < node.mNumChildren; ++i)
        Collect(*node.mChildren[i], inherited, found);
}

/// What a script of this folder writes.
std::vector<std::string> LinesOfNode(const std::string& script, const std::string& arguments) {
    const std::filesystem::path root = std::filesystem::path(KESTRANE_SAMPLES).parent_path();
    const std::string command = "node '" + (root / "Tests/Workbench/exchange" / script).string() + "' '" +
                                (root / "Sources/Workbench/mesher/node_modules").string() + "' " + arguments;
    const auto close = [](FILE* pipe) { EXPECT_EQ(pclose(pipe), 0); };
    const std::unique_ptr<FILE, decltype(close)> pipe(popen(command.c_str(), "r"), close);
    std::vector<std::string> lines;
    char line[512];
    while (std::fgets(line, sizeof line, pipe.get()))
        lines.push_back(std::string(line).substr(0, std::strcspn(line, "\n")));
    return lines;
}

}  // namespace

std::set<std::string> MeshedByWebIfc(const std::filesystem::path& file) {
    const std::vector<std::string> lines = LinesOfNode("meshed.mjs", "'" + file.string() + "'");
    return {lines.begin(), lines.end()};
}

std::vector<std::string> PropertiesByWebIfc(const std::filesystem::path& file, const std::string& set) {
    return LinesOfNode("properties.mjs", "'" + file.string() + "' '" + set + "'");
}

std::set<std::string> MeshedByAssimp(const std::filesystem::path& file) {
    Assimp::Importer importer;
    const aiScene* scene = importer.ReadFile(file.string(), 0);
    EXPECT_NE(scene, nullptr) << importer.GetErrorString();
    std::set<std::string> found;
    if (scene) Collect(*scene->mRootNode, "", found);
    return found;
}

}  // namespace workbench
