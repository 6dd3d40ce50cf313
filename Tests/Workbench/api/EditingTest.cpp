// Opening from the add-on, creating elements, undoing it, and unsaved changes, on a Workbench without
// windows.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>

#include "ACAPinc.h"
#include "HostKit/API/Registry.hpp"
#include "HostKit/GSRoot/Text.hpp"
#include "Workbench/HeadlessApplication.hpp"
#include "Workbench/step/Arguments.hpp"

namespace workbench {
namespace {

using testing::HasSubstr;

int projectEvents = 0;

GSErrCode __ACENV_CALL OnProjectEvent(API_NotifyEventID, Int32) {
    ++projectEvents;
    return NoError;
}

class EditingTest : public HeadlessApplicationTest {
  protected:
    void SetUp() override {
        HeadlessApplicationTest::SetUp();
        projectEvents = 0;
        ASSERT_EQ(ACAPI_Notify_CatchProjectEvent(APINotify_Open, OnProjectEvent), NoError);
    }

    // As an add-on does.
    static GSErrCode OpenFile(const std::filesystem::path& file) {
        IO::Location location{GS::UniString(file.c_str(), CC_UTF8)};
        API_FileOpenPars pars = {};
        pars.fileTypeID = APIFType_IfcFile;
        pars.file = &location;
        return ACAPI_Automate(APIDo_OpenID, &pars);
    }
    static std::vector<API_Element> Records() {
        GS::Array<API_Guid> guids;
        EXPECT_EQ(ACAPI_Element_GetElemList(API_ZombieElemID, &guids), NoError);
        std::vector<API_Element> records;
        for (const API_Guid& guid : guids) {
            records.emplace_back();
            records.back().header.guid = guid;
            EXPECT_EQ(ACAPI_Element_Get(&records.back()), NoError);
        }
        return records;
    }
    static GSErrCode Create(API_Element element, API_Guid* created = nullptr) {
        return ACAPI_CallUndoableCommand("Create Element", [&] {
            const GSErrCode error = ACAPI_Element_Create(&element, nullptr);
            if (created != nullptr) *created = element.header.guid;
            return error;
        });
    }
    API_Element RecordOf(const std::string& name) {
        API_Element record;
        for (const Element& element : application->OpenProject().Elements())
            if (element.name == name) record.header.guid = element.guid;
        EXPECT_EQ(ACAPI_Element_Get(&record), NoError) << name;
        return record;
    }

    void Settle() {
        queue.RunPending();
        EXPECT_TRUE(queue.RunUntil([this] { return !application->IsShaping(); }, std::chrono::minutes(1)));
    }
    std::size_t Count() const { return application->OpenProject().Elements().size(); }
    std::size_t ShapeCount() const {
        std::size_t count = 0;
        for (const Element& element : application->OpenProject().Elements())
            if (application->BoundsOf(element)) ++count;
        return count;
    }

    static std::filesystem::path Sample() {
        return std::filesystem::path(KESTRANE_SAMPLES) / "Gartenpavillon.ifc";
    }
    static constexpr const char* house = "/usr/share/assimp/models/IFC/AC14-FZK-Haus.ifc";
};

TEST_F(EditingTest, RecordsOfAClosedProjectAreCreatedInTheNextAndUndoneStepByStep) {
    ASSERT_EQ(OpenFile(Sample()), NoError);
    const std::vector<API_Element> records = Records();
    const std::size_t count = records.size();
    ASSERT_EQ(OpenFile(Sample()), NoError);
    EXPECT_EQ(Records().size(), count);
    for (const API_Element& record : records)
        ASSERT_EQ(Create(record), NoError);

    EXPECT_EQ(Records().size(), 2 * count) << "asked before anybody was told";
    Settle();
    EXPECT_EQ(ShapeCount() % 2, 0U);
    const std::size_t shapes = ShapeCount();
    EXPECT_GT(shapes, count);
    EXPECT_EQ(application->View()->Count(), shapes + 1) << "and the ground";
    EXPECT_EQ(projectEvents, 0) << "the add-on's own openings";
    EXPECT_TRUE(application->IsModified());
    EXPECT_EQ(application->UndoNames(), std::vector<std::string>(count, "Create Element"));

    // Their GlobalIds were taken; where they came from is known all the same.
    for (const Element& element : application->OpenProject().Elements()) {
        GS::Array<API_Guid> same;
        const API_Guid& external = element.externalIfcId;
        EXPECT_EQ(ACAPI_Element_GetElemListByIFCIdentifier(nullptr, &external, same), NoError);
        EXPECT_EQ(same.GetSize(), 2U) << element.name;
    }

    application->Undo();
    queue.RunPending();
    EXPECT_EQ(application->History().UndoCount(), count - 1);
    application->Undo(count);
    queue.RunPending();
    EXPECT_EQ(Count(), count);
    EXPECT_FALSE(application->IsModified());
    EXPECT_EQ(application->View()->Count(), shapes / 2 + 1);
    application->Redo(count);
    queue.RunPending();
    Settle();
    EXPECT_EQ(Count(), 2 * count);
    EXPECT_EQ(ShapeCount(), shapes);
}

TEST_F(EditingTest, WholesBringTheirPartsAndHostsWhatFillsThem) {
    OpenSample();
    const API_Element stair = RecordOf("Außentreppe"), flight = RecordOf("Treppenlauf");
    const API_Element wall = RecordOf("Außenwand Süd"), window = RecordOf("Fenster Süd");
    struct Case {
        const char* what;
        std::vector<const API_Element*> created;
        std::size_t more;
    };
    for (const Case& one : std::vector<Case>{{"a stair with two parts", {&stair}, 3},
                                             {"its part is there already", {&stair, &flight}, 3},
                                             {"the part comes first", {&flight, &stair}, 3},
                                             {"a part alone", {&flight}, 1},
                                             {"a second copy", {&flight, &flight}, 2},
                                             {"a wall, a window and a door", {&wall, &window}, 3},
                                             {"the window first", {&window, &wall}, 3},
                                             {"two stairs", {&stair, &flight, &stair}, 6}}) {
        SCOPED_TRACE(one.what);
        OpenSample();
        const std::size_t before = Count();
        std::set<std::string> created;
        for (const API_Element* record : one.created) {
            API_Guid guid = APINULLGuid;
            ASSERT_EQ(Create(*record, &guid), NoError);
            API_Element found;
            found.header.guid = guid;
            EXPECT_EQ(ACAPI_Element_Get(&found), NoError);
            created.insert(hostkit::ToUtf8(APIGuidToString(guid)));
        }
        EXPECT_EQ(created.size(), one.created.size());
        EXPECT_EQ(Count(), before + one.more);
        std::size_t undone = one.created.size();
        while (undone-- > 0) {
            application->Undo();
            queue.RunPending();
        }
        EXPECT_EQ(Count(), before);
        driver.QueueAlertAnswer(2);
    }
    EXPECT_TRUE(driver.Alerts().empty());
}

TEST_F(EditingTest, AFailedCommandLeavesNoTrace) {
    OpenSample();
    const std::size_t before = Count();
    API_Element record = RecordOf("Tisch");
    EXPECT_EQ(ACAPI_Element_Create(&record, nullptr), APIERR_NEEDSUNDOSCOPE);
    EXPECT_EQ(ACAPI_CallUndoableCommand("Half",
                                        [&]() -> GSErrCode {
                                            EXPECT_EQ(ACAPI_Element_Create(&record, nullptr), NoError);
                                            EXPECT_EQ(OpenFile(Sample()), APIERR_REFUSEDCMD);
                                            EXPECT_EQ(ACAPI_CallUndoableCommand("In", [] { return NoError; }),
                                                      APIERR_REFUSEDCMD);
                                            return APIERR_CANCEL;
                                        }),
              APIERR_CANCEL);
    EXPECT_THROW(ACAPI_CallUndoableCommand("Thrown", []() -> GSErrCode { throw std::runtime_error("x"); }),
                 std::runtime_error);
    API_Element empty;
    EXPECT_EQ(Create(empty), APIERR_BADPARS);
    EXPECT_EQ(ACAPI_CallUndoableCommand("Nothing", [] { return NoError; }), NoError);
    EXPECT_EQ(Count(), before);
    EXPECT_FALSE(application->IsModified());
    EXPECT_TRUE(application->UndoNames().empty());

    // What was undone is gone once something else is created.
    ASSERT_EQ(Create(RecordOf("Tisch")), NoError);
    application->Undo();
    ASSERT_EQ(Create(RecordOf("Treppenlauf")), NoError);
    EXPECT_EQ(application->History().RedoCount(), 0U);
    queue.RunPending();
    EXPECT_EQ(Count(), before + 1);
    EXPECT_EQ(application->OpenProject().Elements().back().name, "Treppenlauf");
}

TEST_F(EditingTest, AMergeThatIsStoppedIsUndone) {
    struct Stopper : ApplicationObserver {
        bool stops = true;
        bool Working(const std::string& what, double) override {
            return !stops || !what.starts_with("Creating");
        }
    } stopper;
    OpenSample();
    const std::size_t before = Count();
    const std::vector<API_Element> records = Records();
    application->Watch(stopper);
    for (const API_Element& record : records)
        ASSERT_EQ(Create(record), NoError);
    queue.RunPending();
    EXPECT_EQ(Count(), before);
    EXPECT_EQ(application->History().RedoCount(), records.size());
    stopper.stops = false;
    application->Redo(records.size());
    queue.RunPending();
    EXPECT_EQ(Count(), 2 * before);
    application->Unwatch(stopper);
}

TEST_F(EditingTest, ElementsOfAnotherSchemaAreRefusedAndCounted) {
    ASSERT_EQ(OpenFile(house), NoError);
    const std::vector<API_Element> records = Records();
    OpenSample();
    const std::size_t before = Count();
    for (const API_Element& record : records)
        EXPECT_EQ(Create(record), APIERR_REFUSEDPAR);
    EXPECT_TRUE(driver.Alerts().empty());
    Settle();
    EXPECT_EQ(Count(), before);
    EXPECT_FALSE(application->IsModified());
    ASSERT_EQ(driver.Alerts().size(), 1U);
    EXPECT_EQ(hostkit::ToUtf8(driver.Alerts()[0].large), "109 elements were not created.");
    EXPECT_THAT(hostkit::ToUtf8(driver.Alerts()[0].small), HasSubstr("IFC2X3, the open project is IFC4"));
}

TEST_F(EditingTest, UnsavedChangesAreAskedForBeforeTheProjectGoes) {
    enum : short { save = 1, discard, cancel };
    const std::filesystem::path file = folder / "Mine.ifc";
    const std::filesystem::path downloaded = folder / "data" / "Downloaded.ifc";
    std::filesystem::create_directories(folder / "data");
    struct Case {
        const char* what;
        std::filesystem::path opened;
        short answer;
        bool left;
        std::filesystem::path savedTo;
    };
    for (const Case& one : std::vector<Case>{{"cancelled", file, cancel, false, {}},
                                             {"given up", file, discard, true, {}},
                                             {"saved", file, save, true, file},
                                             {"a downloaded model stays as it came", downloaded, save, true,
                                              folder / "data" / "Saved" / "Downloaded.ifc"}}) {
        SCOPED_TRACE(one.what);
        for (const auto& copy : {file, downloaded})
            std::filesystem::copy_file(Sample(), copy, std::filesystem::copy_options::overwrite_existing);
        ASSERT_EQ(OpenFile(one.opened), NoError);
        const std::size_t before = Count();
        const std::size_t asked = driver.Alerts().size();
        ASSERT_EQ(Create(RecordOf("Tisch")), NoError);
        driver.QueueAlertAnswer(one.answer);
        EXPECT_EQ(OpenFile(house), one.left ? NoError : static_cast<GSErrCode>(APIERR_CANCEL));
        EXPECT_EQ(OpenFile(house), one.left ? NoError : static_cast<GSErrCode>(APIERR_CANCEL));
        EXPECT_EQ(driver.Alerts().size(), asked + 1) << "once for one call of the add-on";
        EXPECT_EQ(application->OpenProject().Name(), one.left ? "AC14-FZK-Haus" : one.opened.stem().string());
        for (const auto& model : {file, downloaded}) {
            const bool has = model == one.savedTo;
            EXPECT_EQ(OpenIfc(model).project->Elements().size(), before + (has ? 1 : 0));
        }
        if (!one.savedTo.empty()) {
            EXPECT_EQ(OpenIfc(one.savedTo).project->Elements().size(), before + 1);
        }
        queue.RunPending();
        if (!one.left) {
            application->Undo();
            queue.RunPending();
        }
    }
}

TEST_F(EditingTest, WhatStaysKeepsItsPlaceInTheWindows) {
    OpenSample();
    const API_Element table = RecordOf("Tisch"), wall = RecordOf("Außenwand Süd");
    application->Select(std::vector{wall.header.guid});
    application->SetShown(std::vector{application->OpenProject().FindByGuid(table.header.guid)}, false);
    ASSERT_TRUE(application->BringToFront({FrontWindow::Kind::plan, 1}));
    const std::size_t shown = application->ShownCount();
    API_Guid created = APINULLGuid;
    ASSERT_EQ(Create(table, &created), NoError);
    Settle();
    ASSERT_EQ(application->Selection().size(), 1U);
    EXPECT_EQ(application->Selection()[0]->guid, wall.header.guid);
    EXPECT_EQ(application->ShownCount(), shown + 1) << "the new one, not the hidden one";
    EXPECT_EQ(application->Front(), (FrontWindow{FrontWindow::Kind::plan, 1}));

    application->Select(std::vector{created, wall.header.guid});
    application->Undo();
    queue.RunPending();
    ASSERT_EQ(application->Selection().size(), 1U);
    EXPECT_EQ(application->ShownCount(), shown);
}

TEST_F(EditingTest, ModelsThatCannotBeOpenedLeaveTheProjectAndAreTold) {
    OpenSample();
    step::WriteFile(folder / "cut.ifc", step::FileBytes(Sample()).substr(0, 20000));
    step::WriteFile(folder / "page.ifc", "<html><body>401 Unauthorized</body></html>");
    step::WriteFile(folder / "none.ifc", step::StepFile(""));
    for (const char* name : {"cut.ifc", "page.ifc", "missing.ifc", "../x/y.ifc"})
        EXPECT_EQ(OpenFile(folder / name), APIERR_GENERAL) << name;
    EXPECT_EQ(driver.Alerts().size(), 4U);
    EXPECT_EQ(application->OpenProject().Name(), "Gartenpavillon");
    EXPECT_EQ(OpenFile(folder / "none.ifc"), NoError) << "a model without elements";
    EXPECT_EQ(Count(), 0U);
}

}  // namespace
}  // namespace workbench
