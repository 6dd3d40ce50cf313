#include "Workbench/step/Writer.hpp"

#include <gtest/gtest.h>
#include <sys/resource.h>

#include <csignal>
#include <system_error>

#include "Workbench/step/OutputFile.hpp"
#include "Workbench/step/StepTexts.hpp"

namespace workbench::step {
namespace {

namespace fs = std::filesystem;

size_t FilesIn(const TemporaryFolder& folder) {
    return static_cast<size_t>(
        std::distance(fs::directory_iterator(folder.Path()), fs::directory_iterator()));
}

/// While it lives, no file can grow beyond that size, as on a full disk.
class SmallDisk {
  public:
    explicit SmallDisk(rlim_t bytes) {
        getrlimit(RLIMIT_FSIZE, &old);
        oldHandler = std::signal(SIGXFSZ, SIG_IGN);
        const rlimit small = {bytes, old.rlim_max};
        setrlimit(RLIMIT_FSIZE, &small);
    }
    SmallDisk(const SmallDisk&) = delete;
    SmallDisk& operator=(const SmallDisk&) = delete;
    ~SmallDisk() {
        setrlimit(RLIMIT_FSIZE, &old);
        std::signal(SIGXFSZ, oldHandler);
    }

  private:
    rlimit old = {};
    void (*oldHandler)(int) = nullptr;
};

TEST(StepWriter, LaysChangesOverTheDocumentAndCopiesTheRest) {
    const TemporaryFolder folder;
    const std::string data = "/* first */ #1= IFCX( 'a' ) ;\n#3=IFCX();  #2=IFCX();\n";
    const auto document = Document::FromBytes(StepFile(data));
    const auto write = [&](const Changes& changes) {
        EXPECT_TRUE(WriteWhole(*document, changes, folder / "out.ifc"));
        return FileBytes(folder / "out.ifc");
    };
    EXPECT_EQ(write({}), StepFile(data));

    Changes changes;
    changes.records[3] = "#3=IFCY(#9);";
    changes.records[9] = "#9=IFCZ();";
    changes.removed = {2};
    EXPECT_EQ(write(changes), StepFile("/* first */ #1= IFCX( 'a' ) ;\n#3=IFCY(#9);  \n#9=IFCZ();\n"));

    changes = {};
    changes.fileNameStatement = FileNameStatement(*document, folder / "Häuser.ifc");
    const auto renamed = Document::FromBytes(write(changes));
    EXPECT_EQ(renamed->FileHeader().name, "Häuser.ifc");
    EXPECT_NE(renamed->FileHeader().timeStamp, "2025-06-01T12:00:00");
    EXPECT_EQ(renamed->Records().size(), 3u);

    const Record* chosen[] = {document->Find(1), document->Find(2)};
    EXPECT_TRUE(WriteSelected(*document, chosen, {}, folder / "part.ifc"));
    EXPECT_EQ(FileBytes(folder / "part.ifc"), StepFile("#1= IFCX( 'a' ) ;\n#2=IFCX();\n"));
}

TEST(StepWriter, LeavesTheOldFileWholeWhenItCannotFinish) {
    const TemporaryFolder folder;
    const auto document = Document::FromBytes(StepFile("#1=IFCX('" + std::string(6 << 20, 'x') + "');\n"));
    const auto file = WriteFile(folder / "out.ifc", "old");
    {
        const SmallDisk disk(1 << 20);
        EXPECT_THROW(WriteWhole(*document, {}, file), std::system_error);
    }
    EXPECT_FALSE(WriteWhole(*document, {}, file, [](double) { return false; }));
    EXPECT_EQ(FileBytes(file), "old");
    EXPECT_EQ(FilesIn(folder), 1u);

    EXPECT_THROW(WriteWhole(*document, {}, folder / "none" / "out.ifc"), std::system_error);
    EXPECT_THROW(WriteWhole(*document, {}, folder.Path()), std::system_error);
}

TEST(StepWriter, WritesThroughALinkAndKeepsTheOldPermissions) {
    const TemporaryFolder folder;
    const auto file = WriteFile(folder / "model.ifc", "old");
    fs::permissions(file, fs::perms::owner_read | fs::perms::owner_write);
    fs::create_symlink(file, folder / "link.ifc");
    OutputFile output(folder / "link.ifc");
    output.Write("new");
    output.Commit();
    EXPECT_TRUE(fs::is_symlink(folder / "link.ifc"));
    EXPECT_EQ(FileBytes(file), "new");
    EXPECT_EQ(fs::status(file).permissions(), fs::perms::owner_read | fs::perms::owner_write);
}

}  // namespace
}  // namespace workbench::step
