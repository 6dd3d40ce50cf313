#include <gmock/gmock.h>

#include "AddOn/PlayedHost.hpp"
#include "palette/KestranePalette.hpp"

namespace tests {
namespace {

using Json = nlohmann::json;
using workbench::ModelWindow;

// On the Workbench's own model, windows and selection.
class ViewpointRoundTripTest : public AddOnTest {
  protected:
    void SetUp() override {
        StartWithPalette();
        OpenSample();
        KestranePalette::GetInstance().InsertViewpoint("image");
        for (const auto& element : application->OpenProject().Elements())
            all.push_back(element.guid);
        ASSERT_GT(all.size(), 8U);
    }

    void Look(const workbench::Vec3& camera, const workbench::Vec3& target) {
        application->ChangeView([&](ModelWindow& window) { window.SetCamera({camera, target, 52}); });
    }

    void Leave() {
        Look({50, 50, 50}, {0, 0, 0});
        application->ShowOnly(std::span(all).last(2));
        application->Select(std::span(all).last(1));
        application->ChangeView([](ModelWindow& window) {
            window.SetPlanes({{{1, 0, 0}, 0}});
            window.SetCutting(true);
        });
        application->BringToFront({workbench::FrontWindow::Kind::plan, 0});
    }

    std::vector<API_Guid> Shown() const {
        std::vector<API_Guid> shown;
        for (const auto& element : application->OpenProject().Elements())
            if (application->IsShown(element)) shown.push_back(element.guid);
        return shown;
    }

    std::vector<API_Guid> all;
};

TEST_F(ViewpointRoundTripTest, EverythingComesBack) {
    const double s = std::sqrt(0.5);
    for (const std::size_t shownCount : {std::size_t{1}, all.size() / 2, all.size() - 1, all.size()}) {
        SCOPED_TRACE(shownCount);
        // Planes come back only while the survey point is at the origin: their normals take its shift along.
        const bool far = shownCount > 1;
        application->SetSurvey(far ? API_Tranmat{{1, 0, 0, 3.5e6, 0, 1, 0, 5.6e6, 0, 0, 1, 53.4}}
                                   : API_Tranmat{{1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0}});
        Look({-12.25, -9.5, 7.75}, {3, 2, 1});
        application->ShowOnly(std::span(all).first(shownCount));
        application->Select(std::span(all).first(2));
        application->ChangeView([&](ModelWindow& window) {
            window.SetPlanes({{{s, 0, s}, 4.5}, {{0, 0, 1}, 2.5}});
            window.SetCutting(true);
        });
        const auto shown = Shown();
        const std::string taken = CallForText("AddViewpoint");

        Leave();
        EXPECT_TRUE(
            GS::DynamicCast<DG::JSValue>(Call("SelectViewpoint", ToScript(Json::parse(taken))))->GetBool());
        EXPECT_EQ(Shown(), shown);
        EXPECT_EQ(application->Selection().size(), 2U);
        EXPECT_EQ(application->Front(), workbench::FrontWindow());
        const ModelWindow& window = application->Window3D();
        const workbench::Camera& camera = window.CurrentCamera();
        EXPECT_LT(Length(camera.position - workbench::Vec3{-12.25, -9.5, 7.75}), 1e-8);
        const workbench::Vec3 way = workbench::Vec3{3, 2, 1} - workbench::Vec3{-12.25, -9.5, 7.75};
        EXPECT_LT(Length(camera.target - camera.position - way * (1 / Length(way))), 1e-8);
        EXPECT_EQ(camera.viewCone, 52);
        ASSERT_EQ(window.Planes().size(), 2U);
        EXPECT_TRUE(window.IsCutting());
        if (!far) {
            EXPECT_NEAR(window.Planes()[0].distance, 4.5, 1e-8);
            EXPECT_NEAR(window.Planes()[0].normal.x, s, 1e-9);
            EXPECT_NEAR(window.Planes()[1].distance, 2.5, 1e-8);
        }

        // And again: nothing grows or drifts, and nothing is lost.
        const std::string second = CallForText("AddViewpoint");
        Call("SelectViewpoint", ToScript(Json::parse(second)));
        EXPECT_EQ(Json::parse(CallForText("AddViewpoint")).at("selectedGlobalIds"),
                  Json::parse(taken).at("selectedGlobalIds"));
        EXPECT_LT(Length(application->Window3D().CurrentCamera().position - camera.position), 1e-8);
    }
}

TEST_F(ViewpointRoundTripTest, ASelectionIsToldOnceForAllThatAViewpointChanges) {
    Call("AddComponent", new DG::JSValue(true));
    const std::string taken = CallForText("AddViewpoint");
    Leave();
    const std::size_t before = CountScripts("UpdateSelectedElements()");
    Call("SelectViewpoint", ToScript(Json::parse(taken)));
    EXPECT_EQ(CountScripts("UpdateSelectedElements()"), before);
    queue.RunPending();
    EXPECT_EQ(CountScripts("UpdateSelectedElements()"), before + 1);
}

TEST_F(ViewpointRoundTripTest, HostCallsDoNotGrowWithWhatIsShownOrSelected) {
    Json viewpoint = Json::parse(CallForText("AddViewpoint"));
    viewpoint["visibility"] = false;
    const auto callsFor = [&](std::size_t count) {
        viewpoint["visbilityExceptionGlobalIds"] = Json::array();
        for (std::size_t i = 0; i < count; ++i)
            viewpoint["visbilityExceptionGlobalIds"].push_back(
                application->OpenProject().GlobalIdOf(application->OpenProject().Elements()[i]));
        const std::uint64_t before = Faults().CallsMade();
        Call("SelectViewpoint", ToScript(viewpoint));
        return Faults().CallsMade() - before;
    };
    // Each GUID is looked up: four calls at most. What is done with the elements is done with all at once.
    const std::uint64_t none = callsFor(0);
    EXPECT_LE(callsFor(8), none + 1 + 8 * 4);
}

TEST_F(ViewpointRoundTripTest, AnyHostCallMayFail) {
    const Json viewpoint = [this] {
        application->Select(std::span(all).first(3));
        application->ChangeView([](ModelWindow& window) {
            window.SetPlanes({{{0, 0, 1}, 2}});
            window.SetCutting(true);
        });
        return Json::parse(CallForText("AddViewpoint"));
    }();
    Json axonometry = viewpoint;
    axonometry["cameraType"] = 0;
    axonometry["up"] = {{"x", 0}, {"y", 0}, {"z", 1}};
    const Json guids = {application->OpenProject().GlobalIdOf(application->OpenProject().Elements()[0])};
    const std::pair<const char*, GS::Ref<DG::JSBase>> calls[] = {{"HighlightElements", ToScript(guids)},
                                                                 {"ZoomToElement", ToScript(guids)},
                                                                 {"GetElementNames", ToScript(guids)},
                                                                 {"GetSelectedElements", nullptr},
                                                                 {"SelectViewpoint", ToScript(viewpoint)},
                                                                 {"SelectViewpoint", ToScript(axonometry)},
                                                                 {"AddViewpoint", nullptr},
                                                                 {"ExportSnapshot", Text("{}")}};
    for (const auto& [function, argument] : calls) {
        SCOPED_TRACE(function);
        for (std::uint64_t nth = 1; nth < 400; ++nth) {
            const std::uint64_t before = Faults().CallsMade();
            Faults().FailCall(nth, APIERR_GENERAL);
            EXPECT_NO_THROW(Call(function, argument)) << nth;
            EXPECT_EQ(hostkit::LiveHandles(), 0) << nth;
            const bool struck = Faults().CallsMade() - before >= nth;
            Faults().Clear();
            if (!struck) break;
        }
    }
}

}  // namespace
}  // namespace tests
