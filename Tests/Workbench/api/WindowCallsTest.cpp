// The host's functions about windows, selection and visibility, on a Workbench without windows or add-on.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QImage>
#include <algorithm>

#include "ACAPinc.h"
#include "HostKit/DG/RecordingDriver.hpp"
#include "Workbench/HeadlessApplication.hpp"
#include "Workbench/api/Application.hpp"
#include "Workbench/step/StepTexts.hpp"

namespace workbench {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;

std::vector<API_Neig> told;  // what the selection handler was given

GSErrCode __ACENV_CALL OnSelection(const API_Neig* last) {
    told.push_back(*last);
    return NoError;
}

class WindowCallsTest : public HeadlessApplicationTest {
  protected:
    void SetUp() override {
        HeadlessApplicationTest::SetUp();
        OpenSample();
        told.clear();
        ASSERT_EQ(ACAPI_Notify_CatchSelectionChange(OnSelection), NoError);
    }

    void OpenSample() {
        HeadlessApplicationTest::OpenSample();
        all.clear();
        for (const Element& element : application->OpenProject().Elements())
            if (application->BoundsOf(element)) all.push_back(element.guid);
        ASSERT_GE(all.size(), 4U);
    }

    static GSErrCode Select(const std::vector<API_Guid>& guids, bool add = true) {
        GS::Array<API_Neig> neigs;
        for (const API_Guid& guid : guids)
            neigs.PushNew(guid);
        return ACAPI_Element_Select(neigs, add);
    }

    static std::vector<API_Guid> Selected() {
        API_SelectionInfo info = {};
        GS::Array<API_Neig> neigs;
        const GSErrCode error = ACAPI_Selection_Get(&info, &neigs, false);
        EXPECT_EQ(error, neigs.IsEmpty() ? APIERR_NOSEL : NoError);
        EXPECT_EQ(info.sel_nElem, static_cast<Int32>(neigs.GetSize()));
        std::vector<API_Guid> guids;
        for (const API_Neig& neig : neigs)
            guids.push_back(neig.guid);
        return guids;
    }

    static std::vector<API_Guid> ListedIn3D() {
        GS::Array<API_Guid> list;
        EXPECT_EQ(ACAPI_Element_GetElemList(API_ZombieElemID, &list, APIFilt_In3D), NoError);
        return {list.begin(), list.end()};
    }

    static GSErrCode ZoomTo(const std::vector<API_Guid>& guids) {
        GS::Array<API_Guid> array;
        for (const API_Guid& guid : guids)
            array.Push(guid);
        return ACAPI_Automate(APIDo_ZoomToElementsID, &array);
    }

    static GSErrCode ChangeWindow(API_WindowTypeID type, Int32 index = 0) {
        API_WindowInfo window = {};
        window.typeID = type;
        window.index = index;
        return ACAPI_Automate(APIDo_ChangeWindowID, &window);
    }

    static API_WindowTypeID CurrentWindow() {
        API_WindowInfo window = {};
        EXPECT_EQ(ACAPI_Database(APIDb_GetCurrentWindowID, &window), NoError);
        return window.typeID;
    }

    /// Null when the saving fails.
    QImage Saved(API_FTypeID type, bool highlight, const char* name = "view.png") {
        IO::Location location = hostkit::ToLocation(folder / name);
        API_FileSavePars pars = {};
        pars.fileTypeID = type;
        pars.file = &location;
        API_SavePars_Picture picture = {};
        picture.colorDepth = APIColorDepth_MiCP;
        picture.keepSelectionHighlight = highlight;
        saveError = ACAPI_Automate(APIDo_SaveID, &pars, &picture);
        return QImage(QString::fromStdString((folder / name).string()));
    }

    std::vector<API_Guid> all;  // that have a shape
    const API_Guid unknown = APIGuidFromString("12345678-9ABC-4DEF-8123-456789ABCDEF");
    GSErrCode saveError = NoError;
};

TEST_F(WindowCallsTest, SelectingPassesOverWhatItDoesNotKnow) {
    EXPECT_THAT(Selected(), IsEmpty());
    EXPECT_EQ(Select({all[2], unknown, all[0], all[2]}), NoError);
    EXPECT_THAT(Selected(), ElementsAre(all[2], all[0]));
    EXPECT_EQ(Select({unknown}), APIERR_BADID);
    EXPECT_EQ(Select({unknown}, false), APIERR_BADID);
    EXPECT_EQ(Select({}), NoError);
    EXPECT_THAT(Selected(), ElementsAre(all[2], all[0]));
    EXPECT_EQ(Select({all[2], all[3]}, false), NoError);
    EXPECT_THAT(Selected(), ElementsAre(all[0]));
    EXPECT_EQ(ACAPI_Element_DeselectAll(), NoError);
    EXPECT_THAT(Selected(), IsEmpty());
}

TEST_F(WindowCallsTest, TheAddOnHearsOfItsOwnChangesOnceAndOfAPersonsAtOnce) {
    Select({all[0]});
    Select({all[1], all[2]});
    ACAPI_Element_DeselectAll();
    Select({all[3], all[1]});
    EXPECT_THAT(told, IsEmpty());
    queue.RunPending();
    ASSERT_EQ(told.size(), 1U);
    EXPECT_EQ(told[0].guid, all[1]);

    application->Select(std::span(all).first(1));
    ASSERT_EQ(told.size(), 2U);
    EXPECT_EQ(told[1].guid, all[0]);

    Select({all[2]});
    application->Select({});
    ASSERT_EQ(told.size(), 3U) << "both with one call";
    EXPECT_EQ(told[2].neigID, APINeig_None);
    queue.RunPending();
    EXPECT_EQ(told.size(), 3U);
}

TEST_F(WindowCallsTest, AnotherProjectEndsTheSelectionPlanesAndCamera) {
    application->Select(std::span(all).first(2));
    application->ShowOnly(std::span(all).first(1));
    const Camera first = application->Window3D().CurrentCamera();
    application->ChangeView([](ModelWindow& window) {
        window.SetCamera({{1, 2, 3}, {4, 5, 6}, 20});
        window.SetPlanes({{{0, 0, 1}, 1}});
        window.SetCutting(true);
    });
    const QImage cut = application->Picture3D();
    told.clear();
    OpenSample();
    ASSERT_EQ(told.size(), 1U);
    EXPECT_EQ(told[0].neigID, APINeig_None);
    EXPECT_THAT(Selected(), IsEmpty());
    EXPECT_EQ(ListedIn3D().size(), all.size());
    EXPECT_FALSE(application->Window3D().IsCutting());
    EXPECT_EQ(application->Window3D().CurrentCamera(), first);
    EXPECT_NE(application->Picture3D(), cut);
}

TEST_F(WindowCallsTest, WhatIsSetWhileShapesLoadStays) {
    const auto cut = [](ModelWindow& window) {
        window.SetPlanes({{{0, 0, 1}, 0.5}});
        window.SetCutting(true);
    };
    const QImage whole = application->Picture3D();
    application->ChangeView(cut);
    const QImage section = application->Picture3D();
    ASSERT_NE(section, whole);
    ASSERT_TRUE(application->Open(std::filesystem::path(KESTRANE_SAMPLES) / "Gartenpavillon.ifc"));
    application->ChangeView(cut);
    ASSERT_TRUE(queue.RunUntil([this] { return !application->IsShaping(); }, 60s));
    EXPECT_EQ(application->Picture3D(), section) << "seen as a whole, and cut";
    application->Open(std::filesystem::path(KESTRANE_SAMPLES) / "Gartenpavillon.ifc");
    Camera chosen;
    chosen.position = {20, 20, 20};
    application->ChangeView([&](ModelWindow& window) { window.SetCamera(chosen); });
    ASSERT_TRUE(queue.RunUntil([this] { return !application->IsShaping(); }, 60s));
    EXPECT_EQ(application->Window3D().CurrentCamera(), chosen);
}

TEST_F(WindowCallsTest, ShowingBringsThe3DWindowToTheFrontAndFillsTheFilter) {
    EXPECT_THAT(ListedIn3D(), ElementsAreArray(all));
    Select({all[3], all[1]});
    ASSERT_EQ(ChangeWindow(APIWind_FloorPlanID), NoError);
    EXPECT_EQ(ACAPI_Automate(APIDo_ShowSelectionIn3DID), NoError);
    EXPECT_EQ(CurrentWindow(), APIWind_3DModelID);
    EXPECT_THAT(ListedIn3D(), ElementsAre(all[1], all[3])) << "in the model's order";
    EXPECT_TRUE(ACAPI_Element_Filter(all[1], APIFilt_In3D));
    EXPECT_FALSE(ACAPI_Element_Filter(all[0], APIFilt_In3D));
    EXPECT_FALSE(ACAPI_Element_Filter(unknown, APIFilt_None));

    ACAPI_Element_DeselectAll();
    EXPECT_EQ(ACAPI_Automate(APIDo_ShowSelectionIn3DID), NoError);
    EXPECT_THAT(ListedIn3D(), IsEmpty());
    ASSERT_EQ(ChangeWindow(APIWind_FloorPlanID), NoError);
    EXPECT_EQ(ACAPI_Automate(APIDo_ShowAllIn3DID), NoError);
    EXPECT_EQ(CurrentWindow(), APIWind_3DModelID);
    EXPECT_EQ(ListedIn3D().size(), all.size());
}

TEST_F(WindowCallsTest, OnlyTheWindowsThatThereAreComeToTheFront) {
    EXPECT_EQ(CurrentWindow(), APIWind_3DModelID);
    EXPECT_EQ(ChangeWindow(APIWind_FloorPlanID), NoError);
    const std::tuple<API_WindowTypeID, Int32, GSErrCode> refused[] = {
        {APIWind_FloorPlanID, 99, APIERR_NOPLAN},
        {APIWind_FloorPlanID, -1, APIERR_BADPARS},
        {APIWind_SectionID, 0, APIERR_BADWINDOW},
        {API_ZombieWindowID, 0, APIERR_BADWINDOW}};
    for (const auto& [type, index, error] : refused) {
        EXPECT_EQ(ChangeWindow(type, index), error) << type << " " << index;
        EXPECT_EQ(CurrentWindow(), APIWind_FloorPlanID);
    }
    EXPECT_EQ(ChangeWindow(APIWind_3DModelID, 99), NoError) << "it has no index";
    EXPECT_EQ(CurrentWindow(), APIWind_3DModelID);
}

TEST_F(WindowCallsTest, ZoomingFramesTheElements) {
    const Camera before = application->Window3D().CurrentCamera();
    ASSERT_EQ(ChangeWindow(APIWind_FloorPlanID), NoError);
    EXPECT_EQ(ZoomTo({}), NoError);
    EXPECT_EQ(ZoomTo({unknown}), APIERR_BADID);
    EXPECT_EQ(application->Window3D().CurrentCamera(), before);
    EXPECT_EQ(CurrentWindow(), APIWind_FloorPlanID);

    const Element& element = *application->OpenProject().FindByGuid(all[0]);
    ASSERT_EQ(ZoomTo({unknown, all[0]}), NoError);
    EXPECT_EQ(CurrentWindow(), APIWind_3DModelID);
    const ModelWindow& window = application->Window3D();
    EXPECT_EQ(window.CurrentCamera(), FitCamera(before, *application->BoundsOf(element), window.Size()));
    EXPECT_NE(window.CurrentCamera(), before);

    ASSERT_EQ(ACAPI_Automate(APIDo_ZoomID), NoError);
    EXPECT_LT(Length(window.CurrentCamera().position - before.position), 1e-6);
}

TEST_F(WindowCallsTest, TheSavedPictureIsWhatTheWindowShows) {
    application->ChangeView([](ModelWindow& window) { window.SetSize({320, 200}); });
    Select(all);
    const QImage shown = application->Picture3D();
    EXPECT_EQ(shown.size(), QSize(320, 200));
    const QImage highlighted = Saved(APIFType_PNGFile, true).convertToFormat(shown.format());
    EXPECT_EQ(highlighted, shown);
    EXPECT_NE(Saved(APIFType_PNGFile, false).convertToFormat(shown.format()), shown);
    EXPECT_EQ(application->Picture3D(), shown) << "the highlight is there again";
    ACAPI_Element_DeselectAll();
    EXPECT_NE(Saved(APIFType_PNGFile, true).convertToFormat(shown.format()), shown)
        << "and goes with the selection";
    EXPECT_EQ(Saved(APIFType_JPEGFile, true, "view.jpg").size(), QSize(320, 200));

    EXPECT_TRUE(Saved(APIFType_PNGFile, true, "no/such/folder.png").isNull());
    EXPECT_EQ(saveError, APIERR_GENERAL);
}

TEST_F(WindowCallsTest, WithTheFloorPlanInFrontThePictureIsThePlan) {
    application->ChangeView([](ModelWindow& window) { window.SetSize({320, 200}); });
    std::vector<std::size_t> inked;
    for (Int32 storey = 0; ChangeWindow(APIWind_FloorPlanID, storey) == NoError; ++storey) {
        const QImage plan = Saved(APIFType_PNGFile, true);
        ASSERT_EQ(plan.size(), QSize(320, 200));
        EXPECT_EQ(plan.pixel(0, 0), qRgb(255, 255, 255));
        std::size_t ink = 0;
        for (int y = 0; y < plan.height(); ++y)
            for (int x = 0; x < plan.width(); ++x)
                ink += plan.pixel(x, y) != qRgb(255, 255, 255) ? 1 : 0;
        inked.push_back(ink);
    }
    ASSERT_FALSE(inked.empty());
    EXPECT_GT(*std::max_element(inked.begin(), inked.end()), 200U);

    application->SetDrawsPlan([](bool highlight) {
        QImage picture(highlight ? 3 : 2, 1, QImage::Format_RGB32);
        picture.fill(Qt::black);
        return picture;
    });
    EXPECT_EQ(Saved(APIFType_PNGFile, true).size(), QSize(3, 1));
    EXPECT_EQ(Saved(APIFType_PNGFile, false).size(), QSize(2, 1));
}

}  // namespace
}  // namespace workbench
