#include "Workbench/console/ViewpointTour.hpp"

#include <QPainter>
#include <algorithm>
#include <array>
#include <cstdlib>
#include <nlohmann/json.hpp>

namespace workbench {

namespace {

using Json = nlohmann::json;
using namespace std::chrono_literals;

const char* const topicTitle = "Tour";
constexpr int visibleStep = 12;          // of 255, in one colour
constexpr double mostDifferent = 0.005;  // of the pixels

bool IsSame(QRgb a, QRgb b) {
    return std::abs(qRed(a) - qRed(b)) <= visibleStep && std::abs(qGreen(a) - qGreen(b)) <= visibleStep &&
           std::abs(qBlue(a) - qBlue(b)) <= visibleStep;
}

/// The share of pixels that differ visibly.
double Difference(const QImage& a, const QImage& b) {
    if (a.isNull() || a.size() != b.size()) return 1;
    qint64 count = 0;
    for (int y = 0; y < a.height(); ++y)
        for (int x = 0; x < a.width(); ++x)
            if (!IsSame(a.pixel(x, y), b.pixel(x, y))) ++count;
    return static_cast<double>(count) / (static_cast<double>(a.width()) * a.height());
}

/// Viewpoints keep directions in survey coordinates, and those are not brought back.
bool LiesAtOrigin(const API_Tranmat& survey) {
    constexpr std::array<double, 12> identity = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0};
    return std::ranges::equal(survey.tmx, identity);
}

std::vector<API_Guid> GuidsOf(const std::vector<const Element*>& elements) {
    std::vector<API_Guid> guids;
    guids.reserve(elements.size());
    for (const Element* element : elements)
        guids.push_back(element->guid);
    return guids;
}

void Save(const QImage& image, const std::filesystem::path& file) {
    if (!image.save(QString::fromStdString(file.string()), "PNG"))
        throw AutomationError("the picture could not be written: " + file.string());
}

}  // namespace

ViewpointTour::ViewpointTour(Application& application, Automation& automation,
                             const std::filesystem::path& folder)
    : application(application), automation(automation), folder(folder) {}

std::vector<ViewpointTour::View> ViewpointTour::Views() {
    std::vector<const Element*> all;
    for (const Element& element : application.OpenProject().Elements())
        if (application.BoundsOf(element)) all.push_back(&element);
    if (all.empty()) throw AutomationError("the model has no shapes to look at");
    const auto of = [&all](const auto& fits) {
        std::vector<const Element*> chosen;
        std::copy_if(all.begin(), all.end(), std::back_inserter(chosen), fits);
        return chosen;
    };
    const auto stairs = of([](const Element* element) { return element->ifcClass.starts_with("IfcStair"); });
    const auto walls = of([](const Element* element) { return element->ifcClass.starts_with("IfcWall"); });
    const auto placed = of([](const Element* element) { return element->storey >= 0; });
    const auto storey = of([&placed](const Element* element) {
        return !placed.empty() && element->storey == placed.front()->storey;
    });
    const Element* single = walls.empty() ? all.front() : walls.front();
    const double cut = stairs.empty() ? application.ShownBox().Center().y
                                      : application.BoundsOf(*stairs.front())->Center().y;

    std::vector<View> views{{"whole", [this, guids = GuidsOf(all)] { Arrange(guids, {}); }},
                            {"section", [this, guids = GuidsOf(all), cut] {
                                 Arrange(guids, {{{0, -1, 0}, -cut}});
                             }}};
    if (!storey.empty()) views.push_back({"storey", [this, guids = GuidsOf(storey)] { Arrange(guids, {}); }});
    views.push_back({"element", [this, guid = single->guid] {
                         Arrange({guid}, {});
                         application.Select(std::vector{guid});
                     }});
    return views;
}

void ViewpointTour::Arrange(const std::vector<API_Guid>& shown, const std::vector<Plane>& planes) {
    application.BringToFront({});
    application.ShowOnly(shown);
    application.Select({});
    application.ChangeView([&](ModelWindow& window) {
        window.Reset(application.ShownBox());
        window.SetPlanes(planes);
        window.SetCutting(!planes.empty());
    });
}

// Somewhere else, with something else in view.
void ViewpointTour::Leave() {
    application.ShowAll();
    application.SetShown(application.Selection(), false);
    application.Select({});
    application.ChangeView([&](ModelWindow& window) {
        const Box3 box = application.ShownBox();
        Camera camera = window.CurrentCamera();
        camera.position = box.Center() + box.Size() * 1.3;
        camera.target = box.Center();
        camera.viewCone = 35;
        window.SetCamera(camera);
        window.SetCutting(false);
    });
}

std::string ViewpointTour::OpenTopic() {
    automation.Evaluate("document.querySelector('#tab-issues').click();");
    automation.WaitForPage("document.querySelector('#new-topic')", 10s);
    automation.Evaluate("document.querySelector('#new-topic').click();");
    automation.WaitForPage("document.querySelector('#topic-title')", 10s);
    automation.Evaluate("(() => { const field = document.querySelector('#topic-title'); field.value = " +
                        Json(topicTitle).dump() +
                        "; field.dispatchEvent(new Event('input', {bubbles: true}));"
                        "document.querySelector('#create-topic').click(); })()");
    automation.WaitForPage("document.querySelector('#new-viewpoint')", 10s);
    return topicTitle;
}

std::string ViewpointTour::ClickAndWait(const std::string& selector) {
    automation.Evaluate("document.querySelector('" + selector + "').click()");
    automation.WaitForPage(
        "['done', 'failed'].includes(document.querySelector('#viewpoint-status').dataset.state)", 60s);
    const auto status =
        Json::parse(automation.Evaluate("(({dataset, textContent}) => [dataset.state, textContent.trim()])"
                                        "(document.querySelector('#viewpoint-status'))"));
    if (status.at(0) != "done") throw AutomationError(status.at(1).get<std::string>());
    automation.WaitForPage("document.querySelector('[data-viewpoint-id].current')", 10s);
    return Json::parse(automation.Evaluate(
                           "document.querySelector('[data-viewpoint-id].current').dataset.viewpointId"))
        .get<std::string>();
}

// The window changes its layout when cutting planes come and go.
QImage ViewpointTour::Picture() {
    automation.WaitFor([] { return false; }, 50ms);
    return application.Picture3D();
}

std::string ViewpointTour::TakeAndRestore(const View& view) {
    view.arrange();
    Row row;
    row.taken = Picture();
    const std::vector<API_Guid> selection = GuidsOf(application.Selection());
    const std::size_t shown = application.ShownCount();
    const std::string id = ClickAndWait("#new-viewpoint");
    Leave();
    row.left = Picture();
    ClickAndWait("[data-viewpoint-id=\"" + id + "\"] .open-viewpoint");
    row.restored = Picture();
    rows.push_back(row);

    if (GuidsOf(application.Selection()) != selection) throw AutomationError("the selection is another");
    if (application.ShownCount() != shown) throw AutomationError("other elements are shown");
    const double difference = Difference(row.taken, row.restored);
    const std::string percent = QString::number(difference * 100, 'f', 2).toStdString() + " %";
    const bool comesBackTurned = !LiesAtOrigin(application.Survey());
    if (difference > mostDifferent && !comesBackTurned)
        throw AutomationError(percent + " of the picture differ");
    return std::to_string(shown) + " elements shown, " + percent + " of the picture differ" +
           (comesBackTurned ? " (cameras and planes come back turned: the model has survey coordinates), "
                            : ", ") +
           QString::number(Difference(row.taken, row.left) * 100, 'f', 0).toStdString() + " % when away";
}

std::string ViewpointTour::SavePictures() const {
    if (rows.empty()) throw AutomationError("no viewpoint was taken");
    constexpr QSize cell(480, 320);
    constexpr int gap = 8;
    QImage sheet(3 * cell.width() + 4 * gap, static_cast<int>(rows.size()) * (cell.height() + gap) + gap,
                 QImage::Format_RGB32);
    sheet.fill(Qt::white);
    QPainter painter(&sheet);
    for (std::size_t row = 0; row < rows.size(); ++row) {
        const QImage* const images[] = {&rows[row].taken, &rows[row].left, &rows[row].restored};
        for (int column = 0; column < 3; ++column) {
            const QImage small =
                images[column]->scaled(cell, Qt::KeepAspectRatioByExpanding, Qt::SmoothTransformation);
            const QRect target(QPoint(gap + column * (cell.width() + gap),
                                      gap + static_cast<int>(row) * (cell.height() + gap)),
                               cell);
            painter.drawImage(target, small,
                              QRect({}, cell).translated(small.rect().center() - QRect({}, cell).center()));
        }
    }
    painter.end();
    Save(rows.back().taken, folder / "viewpoint-taken.png");
    Save(rows.back().left, folder / "viewpoint-left.png");
    Save(rows.back().restored, folder / "viewpoint-restored.png");
    Save(sheet, folder / "viewpoints.png");
    return (folder / "viewpoints.png").string();
}

}  // namespace workbench
