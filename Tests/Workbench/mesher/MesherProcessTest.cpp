#include "Workbench/mesher/MesherProcess.hpp"

#include <gmock/gmock.h>
#include <signal.h>
#include <stdlib.h>

#include <algorithm>
#include <cerrno>
#include <fstream>
#include <future>
#include <sstream>
#include <thread>

namespace workbench {
namespace {

namespace fs = std::filesystem;
using std::chrono::milliseconds;
using Status = MeshOutcome::Status;
using testing::HasSubstr;

const fs::path realScript = fs::path(KESTRANE_SHARE) / "mesher/mesher.mjs";
const fs::path house = "/usr/share/assimp/models/IFC/AC14-FZK-Haus.ifc";

struct Answer {
    std::vector<ElementMeshPtr> elements;
    std::vector<std::size_t> done;
    std::size_t total = 0;
    MeshOutcome outcome;

    Box3 Bounds() const {
        Box3 bounds;
        for (const ElementMeshPtr& element : elements)
            bounds.Add(element->bounds);
        return bounds;
    }
};

std::future<Answer> Begin(MesherProcess& mesher, const fs::path& file,
                          const std::function<void()>& atFirstBatch = {}) {
    auto answer = std::make_shared<Answer>();
    auto promise = std::make_shared<std::promise<Answer>>();
    mesher.Mesh(
        file,
        [=](const MeshBatch& batch) {
            if (answer->done.empty() && atFirstBatch) atFirstBatch();
            answer->elements.insert(answer->elements.end(), batch.elements.begin(), batch.elements.end());
            answer->done.push_back(batch.done);
            answer->total = batch.total;
        },
        [=](MeshOutcome outcome) {
            answer->outcome = std::move(outcome);
            promise->set_value(*answer);
        });
    return promise->get_future();
}

// The constructor only begins to start the child.
int ChildOf(const MesherProcess& mesher) {
    for (int round = 0; round < 1000 && mesher.ChildId() == 0; ++round)
        std::this_thread::sleep_for(milliseconds(5));
    return mesher.ChildId();
}

bool IsGone(int process) {
    return kill(process, 0) != 0 && errno == ESRCH;
}

class MesherProcessTest : public testing::Test {
  protected:
    MesherProcessTest() {
        std::string pattern = (fs::temp_directory_path() / "mesher-XXXXXX").string();
        folder = mkdtemp(pattern.data());
    }
    ~MesherProcessTest() override { fs::remove_all(folder); }

    fs::path Write(const std::string& name, const std::string& text) const {
        std::ofstream(folder / name, std::ios::binary) << text;
        return folder / name;
    }

    // A child that behaves badly in the way of a shell script.
    MesherSettings Shell(const std::string& script, milliseconds timeLimit = std::chrono::minutes(1)) const {
        return {Write("child.sh", script), "/bin/sh", timeLimit};
    }

    fs::path folder;
};

// A wall of 2 x 1 x 3 units as a boundary representation, and an opening of the same shape.
std::string WallFile(const std::string& lengthUnit, double placedAt, double drawnAt) {
    std::ostringstream text;
    text << std::fixed << "ISO-10303-21;\nHEADER;\nFILE_DESCRIPTION((''),'2;1');\n"
         << "FILE_NAME('','',(''),(''),'','','');\nFILE_SCHEMA(('IFC4'));\nENDSEC;\nDATA;\n"
         << "#1=IFCPROJECT('0000000000000000000001',$,'p',$,$,$,$,(#2),#5);\n"
         << "#2=IFCGEOMETRICREPRESENTATIONCONTEXT($,'Model',3,1.E-5,#3,$);\n#3=IFCAXIS2PLACEMENT3D(#4,$,$);\n"
         << "#4=IFCCARTESIANPOINT((0.,0.,0.));\n#5=IFCUNITASSIGNMENT((#6));\n#6=" << lengthUnit << ";\n"
         << "#10=IFCLOCALPLACEMENT($,#11);\n#11=IFCAXIS2PLACEMENT3D(#12,$,$);\n"
         << "#12=IFCCARTESIANPOINT((" << placedAt << "," << placedAt << ",0.));\n"
         << "#20=IFCWALL('0000000000000000000002',$,'w',$,$,#10,#21,$,$);\n"
         << "#25=IFCOPENINGELEMENT('0000000000000000000003',$,'o',$,$,#10,#21,$,$);\n"
         << "#21=IFCPRODUCTDEFINITIONSHAPE($,$,(#22));\n#22=IFCSHAPEREPRESENTATION(#2,'Body','Brep',(#23));\n"
         << "#23=IFCFACETEDBREP(#24);\n#24=IFCCLOSEDSHELL((#100,#110,#120,#130,#140,#150));\n";
    const int faces[6][4] = {{0, 2, 3, 1}, {4, 5, 7, 6}, {0, 1, 5, 4},
                             {1, 3, 7, 5}, {3, 2, 6, 7}, {2, 0, 4, 6}};
    for (int at = 0; at < 6; ++at) {
        const int id = 100 + 10 * at;
        text << '#' << id << "=IFCFACE((#" << id + 1 << "));\n#" << id + 1 << "=IFCFACEOUTERBOUND(#" << id + 2
             << ",.T.);\n#" << id + 2 << "=IFCPOLYLOOP((#" << 200 + faces[at][0] << ",#" << 200 + faces[at][1]
             << ",#" << 200 + faces[at][2] << ",#" << 200 + faces[at][3] << "));\n";
    }
    for (int at = 0; at < 8; ++at)
        text << '#' << 200 + at << "=IFCCARTESIANPOINT((" << drawnAt + ((at & 1) != 0 ? 2 : 0) << ","
             << drawnAt + ((at & 2) != 0 ? 1 : 0) << "," << ((at & 4) != 0 ? 3. : 0.) << "));\n";
    text << "ENDSEC;\nEND-ISO-10303-21;\n";
    return text.str();
}

TEST_F(MesherProcessTest, DeliversTheHouseInBatchesAndStaysForTheNextFile) {
    MesherProcess mesher({realScript});
    const Answer first = Begin(mesher, house).get();
    const int child = mesher.ChildId();

    EXPECT_EQ(first.outcome.status, Status::Done) << first.outcome.detail;
    EXPECT_EQ(first.elements.size(), 110u);
    EXPECT_EQ(first.outcome.elements, 110u);
    EXPECT_THAT(first.outcome.failed, testing::IsEmpty());
    EXPECT_GT(first.done.size(), 1u);
    EXPECT_TRUE(std::is_sorted(first.done.begin(), first.done.end()));
    EXPECT_EQ(first.done.back(), first.total);
    const Box3 bounds = first.Bounds();
    EXPECT_NEAR(bounds.min.z, -1, 1e-6);
    EXPECT_NEAR(bounds.max.z, 6.317691, 1e-5);
    EXPECT_NEAR(bounds.Size().x, 18, 1e-6);
    EXPECT_NEAR(bounds.Size().y, 16, 1e-6);

    // Not readable as IFC, in several ways; the child survives each.
    for (const fs::path& file :
         {folder / "missing.ifc", folder, Write("empty.ifc", ""), Write("note.ifc", "Hello"),
          Write("zero.ifc", std::string(5000, '\0')), Write("cut.ifc", "ISO-10303-21;\nHEADER;")}) {
        const Answer refused = Begin(mesher, file).get();
        EXPECT_EQ(refused.outcome.status, Status::Refused) << file;
        EXPECT_NE(refused.outcome.detail, "") << file;
    }
    const Answer again = Begin(mesher, house).get();
    EXPECT_EQ(again.elements.size(), 110u);
    EXPECT_EQ(mesher.ChildId(), child);
}

TEST_F(MesherProcessTest, TurnsUnitsAndLargeOffsetsIntoExactMetres) {
    const struct {
        const char* unit;
        double metres;
        double placedAt;
        double drawnAt;
    } cases[] = {
        {"IFCSIUNIT(*,.LENGTHUNIT.,$,.METRE.)", 1, 0, 0},
        {"IFCSIUNIT(*,.LENGTHUNIT.,.MILLI.,.METRE.)", 0.001, 0, 0},
        {"IFCSIUNIT(*,.LENGTHUNIT.,$,.METRE.)", 1, 3456789.25, 0},
        {"IFCSIUNIT(*,.LENGTHUNIT.,$,.METRE.)", 1, 0, 3456789.25},
    };
    MesherProcess mesher({realScript});
    for (const auto& test : cases) {
        SCOPED_TRACE(testing::Message() << test.unit << ' ' << test.placedAt << ' ' << test.drawnAt);
        // A line break is allowed in a file's name.
        const fs::path file = Write("wall \n ä.ifc", WallFile(test.unit, test.placedAt, test.drawnAt));
        const Answer answer = Begin(mesher, file).get();
        ASSERT_EQ(answer.elements.size(), 1u) << answer.outcome.detail;  // the opening is no element
        const ElementMesh& wall = *answer.elements[0];
        EXPECT_EQ(wall.record, 20u);
        const double start = (test.placedAt + test.drawnAt) * test.metres;
        EXPECT_NEAR(wall.bounds.min.x, start, 1e-6);
        EXPECT_NEAR(wall.bounds.min.y, start, 1e-6);
        EXPECT_NEAR(wall.bounds.min.z, 0, 1e-6);
        EXPECT_NEAR(wall.bounds.Size().x, 2 * test.metres, 1e-6);
        EXPECT_NEAR(wall.bounds.Size().y, 1 * test.metres, 1e-6);
        EXPECT_NEAR(wall.bounds.Size().z, 3 * test.metres, 1e-6);
    }
}

TEST_F(MesherProcessTest, ReportsAKilledChildAndGoesOnWithANewOne) {
    MesherProcess mesher({realScript});
    int first = 0;
    const Answer killed = Begin(mesher, house, [&] {
                              first = mesher.ChildId();
                              kill(first, SIGKILL);
                          }).get();
    EXPECT_EQ(killed.outcome.status, Status::Crashed);
    EXPECT_THAT(killed.outcome.detail, HasSubstr("signal 9"));
    EXPECT_TRUE(IsGone(first));

    const int second = mesher.ChildId();
    EXPECT_NE(second, first);
    kill(second, SIGKILL);  // while it has nothing to do
    const Answer answer = Begin(mesher, house).get();
    // Either the death was noticed in time and the child replaced, or it is reported; never a hang.
    if (answer.outcome.status == Status::Crashed)
        EXPECT_EQ(Begin(mesher, house).get().elements.size(), 110u);
    else
        EXPECT_EQ(answer.elements.size(), 110u);
}

TEST_F(MesherProcessTest, ReportsEveryWayAChildCanFail) {
    const struct {
        const char* script;
        const char* detail;
    } cases[] = {
        {"read -r line; echo 'out of luck' >&2; exit 3", "exit status 3\nout of luck"},
        {"exit 4", "exit status 4"},
        {"read -r line; kill -SEGV $$", "signal 11"},
        {"echo 'a library prints where frames belong'; exec sleep 600", "unexpected bytes"},
        {"printf 'MSH1\\011\\0\\0\\0\\0\\0\\0\\0'; exec sleep 600", "unexpected bytes"},          // kind 9
        {"printf 'MSH1\\001\\0\\0\\0\\377\\377\\377\\377'; exec sleep 600", "unexpected bytes"},  // 4 GiB
        {"printf 'MSH1\\003\\0\\0\\0\\002\\0\\0\\0ab'; exec sleep 600", "unexpected bytes"},      // short
        {"exec >&-; exec sleep 600", "signal 9"},                                                 // mute
        {"read -r line; head -c 9000000 /dev/zero | tr '\\0' x >&2; echo end >&2; exit 5",
         "xxxend"},  // chatty
    };
    for (const auto& test : cases) {
        SCOPED_TRACE(test.script);
        MesherProcess mesher(Shell(test.script));
        for (int round = 0; round < 2; ++round) {
            // The shell's read waits for a line's end.
            const Answer answer = Begin(mesher, "file\n").get();
            EXPECT_EQ(answer.outcome.status, Status::Crashed);
            EXPECT_THAT(answer.outcome.detail, HasSubstr(test.detail));
            EXPECT_LT(answer.outcome.detail.size(), 5000u);
        }
    }
    MesherProcess nowhere({realScript, (folder / "no-such-program").string()});
    const Answer answer = Begin(nowhere, house).get();
    EXPECT_EQ(answer.outcome.status, Status::Crashed);
    EXPECT_THAT(answer.outcome.detail, HasSubstr("no-such-program"));
}

TEST_F(MesherProcessTest, TimeLimitEndsAFileAndItsChild) {
    MesherProcess mesher(Shell("exec sleep 600", milliseconds(50)));
    const int child = ChildOf(mesher);
    EXPECT_EQ(Begin(mesher, house).get().outcome.status, Status::TimedOut);
    ASSERT_NE(child, 0);
    EXPECT_TRUE(IsGone(child));
}

TEST_F(MesherProcessTest, CancelNewFileAndDestructionEndTheFileUnderWay) {
    std::future<Answer> last;
    int child = 0;
    {
        MesherProcess mesher(Shell("exec sleep 600"));
        auto first = Begin(mesher, "1");
        auto second = Begin(mesher, "2");
        auto third = Begin(mesher, "3");
        EXPECT_EQ(first.get().outcome.status, Status::Cancelled);
        EXPECT_EQ(second.get().outcome.status, Status::Cancelled);
        mesher.Cancel();
        EXPECT_EQ(third.get().outcome.status, Status::Cancelled);
        mesher.Cancel();  // nothing is under way
        last = Begin(mesher, "4");
        child = ChildOf(mesher);
    }
    ASSERT_EQ(last.wait_for(milliseconds(0)), std::future_status::ready);
    EXPECT_EQ(last.get().outcome.status, Status::Cancelled);
    ASSERT_NE(child, 0);
    EXPECT_TRUE(IsGone(child));
}

}  // namespace
}  // namespace workbench
