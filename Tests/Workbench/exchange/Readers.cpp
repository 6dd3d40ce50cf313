#include "Workbench/exchange/Readers.hpp"

#include <gtest/gtest.h>

#include <assimp/scene.h>
#include <assimp/Importer.hpp>
#include <cstdio>
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

}  // namespace

std::set<std::string> MeshedByWebIfc(const std::filesystem::path& file) {
    const std::filesystem::path root = std::filesystem::path(KESTRANE_SAMPLES).parent_path();
    const std::string command = "node '" + (root / "Tests/Workbench/exchange/meshed.mjs").string() + "' '" +
                                (root / "Sources/Workbench/mesher/node_modules").string() + "' '" +
                                file.string() + "'";
    const auto close = [](FILE* pipe) { EXPECT_EQ(pclose(pipe), 0); };
    const std::unique_ptr<FILE, decltype(close)> pipe(popen(command.c_str(), "r"), close);
    std::set<std::string> found;
    char line[64];
    while (std::fgets(line, sizeof line, pipe.get()))
        found.insert(std::string(line).substr(0, globalIdLength));
    return found;
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
