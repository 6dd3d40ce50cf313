#include "File.hpp"

#include <gtest/gtest.h>

#include <fstream>

#include "FileSystem.hpp"
#include "Support.hpp"
#include "TreeEnumerator.hpp"

namespace fs = std::filesystem;
using IO::FileSystem;
using IO::Location;
using IO::Name;

namespace {

class FileTest : public testing::Test {
  protected:
    Location At(const std::string& name) const { return hostkit::ToLocation(folder.Path() / name); }

    void Write(const std::string& name, const std::string& text) const {
        fs::create_directories((folder.Path() / name).parent_path());
        std::ofstream(folder.Path() / name) << text;
    }

    std::string Read(const std::string& name) const {
        std::ifstream file(folder.Path() / name);
        return {std::istreambuf_iterator<char>(file), {}};
    }

    TemporaryFolder folder;
};

class Walker : public IO::TreeEnumerator {
  public:
    using TreeEnumerator::TreeEnumerator;
    std::vector<std::string> seen;

  protected:
    bool FileFound(const Name& name) override {
        Location location;
        Name parent;
        GetParent().GetLocation(&location);
        location.GetLastLocalName(&parent);
        seen.push_back(hostkit::ToUtf8(parent.ToString() + "/" + name.ToString()));
        return false;
    }

    bool FolderEntered(const Name& name, const IO::Folder&) override { return name != "skipped"; }
    void FolderLeft(const Name& name, const IO::Folder&) override {
        seen.push_back("left " + hostkit::ToUtf8(name.ToString()));
    }
};

}  // namespace

TEST(LocationTest, IsBuiltFromComponents) {
    Location location("/data/folder//");
    EXPECT_EQ(location, Location("/data/folder"));
    EXPECT_EQ(location.AppendToLocal("model.ifc"), NoError);
    for (const char* bad : {"", ".", "..", "a/b", "/"}) {
        EXPECT_EQ(location.AppendToLocal(bad), FileSystem::BadLocation) << bad;
        EXPECT_TRUE(Location(location, bad).IsEmpty()) << bad;
    }
    GS::UniString path;
    EXPECT_EQ(location.ToPath(&path), NoError);
    EXPECT_EQ(path, "/data/folder/model.ifc");
    EXPECT_EQ(location.SetLastLocalName("other.ifc"), NoError);
    EXPECT_EQ(location.DeleteLastLocalName(), NoError);
    EXPECT_EQ(location.DeleteLastLocalName(), NoError);
    EXPECT_EQ(location.DeleteLastLocalName(), NoError);
    EXPECT_EQ(location, Location("/"));
    EXPECT_EQ(location.DeleteLastLocalName(), FileSystem::BadLocation);
    EXPECT_EQ(Location(location, "etc"), Location("/etc"));
    EXPECT_EQ(Location().ToPath(&path), FileSystem::BadLocation);

    for (const auto& [name, base, extension] : std::vector<std::array<const char*, 3>>{
             {"a.b.ifc", "a.b", "ifc"}, {".hidden", ".hidden", ""}, {"plain", "plain", ""}}) {
        EXPECT_EQ(Name(name).GetBase(), base);
        EXPECT_EQ(Name(name).GetExtension(), extension);
    }
}

TEST_F(FileTest, WritingReplacesTheContent) {
    Write("a.txt", "a long old text");
    for (const auto mode : {IO::File::WriteMode, IO::File::WriteEmptyMode}) {
        IO::File file(At("a.txt"));
        ASSERT_EQ(file.Open(mode), NoError);
        EXPECT_EQ(file.WriteBin("new", 3), NoError);
        EXPECT_EQ(file.Close(), NoError);
        EXPECT_EQ(Read("a.txt"), "new");
    }
    IO::File file(At("a.txt"));
    ASSERT_EQ(file.Open(IO::File::ReadWriteMode), NoError);
    EXPECT_EQ(file.WriteBin("N", 1), NoError);
    EXPECT_EQ(file.SetDataLength(2), NoError);
    EXPECT_EQ(Read("a.txt"), "Ne");
}

TEST_F(FileTest, ReadsWithoutPretending) {
    Write("a.txt", "12345");
    IO::File file(At("a.txt"));
    UInt64 length = 99;
    EXPECT_EQ(file.GetDataLength(&length), FileSystem::NotOpen);
    ASSERT_EQ(file.Open(IO::File::ReadMode), NoError);
    EXPECT_EQ(file.GetDataLength(&length), NoError);
    EXPECT_EQ(length, 5U);
    char bytes[16] = {};
    USize done = 0;
    EXPECT_EQ(file.ReadBin(bytes, 3), NoError);
    EXPECT_EQ(file.ReadBin(bytes, 16, &done), NoError);
    EXPECT_EQ(std::string(bytes, done), "45");
    EXPECT_EQ(file.ReadBin(bytes, 1), FileSystem::EndOfFile);
    EXPECT_NE(file.WriteBin("x", 1), NoError);
}

TEST_F(FileTest, OpensWhatThereIs) {
    EXPECT_EQ(IO::File(At("none"), IO::File::OnNotFound::Fail).GetStatus(), FileSystem::TargetNotFound);
    EXPECT_EQ(IO::File(At("none")).Open(IO::File::ReadMode), FileSystem::TargetNotFound);
    EXPECT_EQ(IO::File(At("none")).Open(IO::File::WriteMode), FileSystem::TargetNotFound);
    EXPECT_EQ(IO::File(At("none/below"), IO::File::Create).GetStatus(), FileSystem::TargetNotFound);
    EXPECT_EQ(IO::File(At(".")).Open(IO::File::ReadMode), FileSystem::BadLocation);
    EXPECT_EQ(IO::File(Location()).Open(IO::File::ReadMode), FileSystem::BadLocation);
    EXPECT_EQ(IO::File(IO::Folder(At("sub"), IO::Folder::Create), "new", IO::File::Create).GetStatus(),
              NoError);
    EXPECT_TRUE(fs::exists(folder.Path() / "sub/new"));
    EXPECT_EQ(IO::Folder(At("none"), IO::Folder::Fail).GetStatus(), FileSystem::TargetNotFound);
    EXPECT_EQ(IO::Folder(At("sub/new"), IO::Folder::Create).GetStatus(), FileSystem::BadLocation);

    std::error_code full;
    if (!fs::is_character_file("/dev/full", full)) return;
    EXPECT_NE(IO::File(Location("/dev/full")).Open(IO::File::WriteMode), NoError);
}

TEST_F(FileTest, LocationsAsUrls) {
    const struct {
        std::string path;
        std::string url;
    } cases[] = {{"/a/b.dwg", "file:///a/b.dwg"}, {"/\xC3\xA4 +%/~_.-", "file:///%C3%A4%20%2B%25/~_.-"}};
    for (const auto& [path, url] : cases) {
        GS::UniString text;
        EXPECT_EQ(Location(path.c_str()).ToURLString(&text), NoError);
        EXPECT_EQ(hostkit::ToUtf8(text), url);
        EXPECT_EQ(hostkit::LocationOfUrl(url), Location(path.c_str()));
    }
    for (const char* bad : {"", "/a", "http://a", "file:///a%2", "file:///a%", "file:///%zz"})
        EXPECT_TRUE(hostkit::LocationOfUrl(bad).IsEmpty()) << bad;
    GS::UniString text;
    EXPECT_NE(Location().ToURLString(&text), NoError);
    EXPECT_TRUE(Location(("/" + std::string(255, 'n')).c_str()).IsLegalInNativeFileSystem());
    for (const std::string& bad : {std::string(), std::string("relative"), "/" + std::string(256, 'n')})
        EXPECT_FALSE(Location(bad.c_str()).IsLegalInNativeFileSystem()) << bad;
}

TEST_F(FileTest, NothingIsOverwritten) {
    Write("a", "A");
    Write("b", "B");
    Write("dir/inner", "I");
    EXPECT_EQ(IO::fileSystem.Copy(At("a"), At("b")), FileSystem::TargetExists);
    EXPECT_EQ(IO::fileSystem.Move(At("a"), At("b")), FileSystem::TargetExists);
    EXPECT_EQ(IO::fileSystem.Move(At("a"), At("a")), NoError);
    EXPECT_EQ(IO::fileSystem.Rename(At("a"), "dir"), FileSystem::TargetExists);
    EXPECT_EQ(IO::fileSystem.Copy(At("dir"), At("b")), FileSystem::TargetExists);
    EXPECT_EQ(IO::fileSystem.Copy(At("none"), At("c")), FileSystem::TargetNotFound);
    EXPECT_EQ(IO::fileSystem.Copy(At("dir"), At("dir/copy")), FileSystem::BadLocation);
    EXPECT_EQ(Read("a") + Read("b"), "AB");

    EXPECT_EQ(IO::fileSystem.Copy(At("dir"), At("copy")), NoError);
    EXPECT_EQ(Read("copy/inner"), "I");
    EXPECT_EQ(IO::fileSystem.Rename(At("a"), "c"), NoError);
    EXPECT_EQ(Read("c"), "A");
    EXPECT_EQ(IO::fileSystem.Rename(At("c"), "x/y"), FileSystem::BadLocation);
    EXPECT_EQ(IO::fileSystem.Delete(At("copy")), NoError);
    EXPECT_EQ(IO::fileSystem.Delete(At("copy")), FileSystem::TargetNotFound);

    EXPECT_EQ(IO::fileSystem.CreateFolderTree(At("x/y/z")), NoError);
    EXPECT_EQ(IO::fileSystem.CreateFolderTree(At("x/y/z")), NoError);
    EXPECT_NE(IO::fileSystem.CreateFolderTree(At("b/below")), NoError);
    bool contains = false;
    EXPECT_EQ(IO::fileSystem.Contains(At("x/y/z"), &contains), NoError);
    EXPECT_TRUE(contains);
}

TEST_F(FileTest, WalksInOrderAndNotThroughLinks) {
    for (const char* name : {"b", "a", "sub/\xC3\xA4", "sub/inner/c", "skipped/d"})
        Write(name, "");
    fs::create_directory_symlink(folder.Path(), folder.Path() / "sub/loop");
    fs::create_symlink("nowhere", folder.Path() / "dangling");
    const std::string root = folder.Path().filename();

    Walker walker{IO::Folder(At("."))};
    Walker again{IO::Folder(hostkit::ToLocation(folder.Path()))};
    ASSERT_EQ(again.Do(), NoError);
    ASSERT_EQ(walker.Do(), NoError);
    const std::vector<std::string> expected = {root + "/a", root + "/b",  "sub/\xC3\xA4",
                                               "inner/c",   "left inner", "left sub"};
    EXPECT_EQ(again.seen, expected);
    EXPECT_EQ(walker.seen.size(), expected.size());
    EXPECT_EQ(Walker(IO::Folder(At("none"))).Do(), FileSystem::TargetNotFound);
}
