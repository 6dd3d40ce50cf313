// The files of a plan, read back with programs of others.

#include "Workbench/navigator/PlanFiles.hpp"

#include <gmock/gmock.h>
#include <sys/resource.h>

#include <QRegularExpression>
#include <csignal>
#include <map>
#include <regex>
#include <set>

#include "Workbench/HeadlessApplication.hpp"
#include "Workbench/desktop/OffscreenApplication.hpp"
#include "Workbench/plan/Programs.hpp"

namespace workbench {
namespace {

namespace fs = std::filesystem;
using step::FileBytes;
using testing::HasSubstr;

constexpr double pointsPerMetre = 72 / 0.0254;

class PlanFilesTest : public HeadlessApplicationTest {
  protected:
    void SetUp() override {
        HeadlessApplicationTest::SetUp();
        OpenSample();
        shapes = application->ShapesOn(0);
        drawing = DrawPlan(application->OpenProject(), 0, shapes);
        ASSERT_GT(drawing.elements.size(), 5U);
    }
    fs::path File(const char* name) const { return folder / name; }
    static QImage Picture(const fs::path& file) { return QImage(QString::fromStdString(file.string())); }

    OffscreenApplication qt;  // fonts
    std::vector<ElementMeshPtr> shapes;
    PlanDrawing drawing;
};

// Of what a closed body has at that height: what its skin below looks down on, less what it looks up from.
double AreaAt(const ElementMesh& mesh, double height) {
    double area = 0;
    for (const MeshPart& part : mesh.parts)
        for (std::size_t at = 0; at + 2 < part.indices.size(); at += 3) {
            std::vector<Vec3> below;
            const auto corner = [&](std::size_t index) {
                const float* place = &part.positions[3 * part.indices[at + index % 3]];
                return Vec3{place[0], place[1], mesh.origin.z + place[2] - height};
            };
            for (std::size_t index = 0; index < 3; ++index) {
                const Vec3 a = corner(index), b = corner(index + 1);
                if (a.z < 0) below.push_back(a);
                if ((a.z < 0) != (b.z < 0)) below.push_back(a + (b - a) * (a.z / (a.z - b.z)));
            }
            for (std::size_t index = 0; index < below.size(); ++index) {
                const Vec3 &a = below[index], &b = below[(index + 1) % below.size()];
                area -= (a.x * b.y - b.x * a.y) / 2;
            }
        }
    return std::abs(area);
}

TEST_F(PlanFilesTest, CutAreasAreThoseOfTheGeometry) {
    const double height = application->OpenProject().Storeys()[0].floor + planCutHeight;
    std::map<std::uint64_t, const ElementMesh*> byRecord;
    for (const ElementMeshPtr& shape : shapes)
        byRecord[shape->record] = shape.get();
    int walls = 0;
    for (const PlanElement& element : drawing.elements) {
        if (!element.ifcClass.starts_with("IfcWall") || element.parts.empty()) continue;
        ++walls;
        const double expected = AreaAt(*byRecord.at(element.record), height);
        EXPECT_GT(expected, 0.01);
        EXPECT_NEAR(element.area, expected, 0.001 * expected) << element.record;
    }
    EXPECT_GT(walls, 2);
}

// Lines as text, whichever end comes first.
using Lines = std::map<QString, std::multiset<std::string>>;

void Add(std::multiset<std::string>& lines, const QPolygonF& points) {
    std::string text;
    char number[64];
    for (const QPointF& point : points) {
        std::snprintf(number, sizeof number, "%.6f %.6f,", point.x() + 1e-9, point.y() + 1e-9);
        text += number;
    }
    lines.insert(text);
}

TEST_F(PlanFilesTest, TheDwgHasEveryClassAsALayerWithItsLines) {
    WritePlanDwg(drawing, "Erdgeschoß", File("plan.dwg"));
    Lines expected;
    for (const PlanElement& element : drawing.elements) {
        auto& lines = expected[QString::fromStdString(element.ifcClass)];
        for (const SectionPart& part : element.parts)
            for (const QPolygonF& ring : part.rings)
                Add(lines, ring);
        for (const QLineF& edge : element.edges)
            Add(lines, {edge.p1(), edge.p2()});
    }
    EXPECT_GT(expected.size(), 2U);
    Lines found;
    QString layer, text;
    for (const QString& line : OutputOf("ogrinfo", {"-ro", "-al", "-q"}, File("plan.dwg")).split('\n')) {
        if (line.startsWith("Layer name: ")) layer = line.mid(12);
        if (line.contains("  text (String) = ")) text = layer + line.section('=', 1);
        if (const QPolygonF points = PointsOf(line); !points.isEmpty()) Add(found[layer], points);
    }
    EXPECT_EQ(found, expected);
    EXPECT_EQ(text, "IfcBuildingStorey Erdgeschoß");
}

TEST_F(PlanFilesTest, ThePdfIsVectorsAtATrueScaleAndText) {
    WritePlanPdf(drawing, "Haus · Erdgeschoß", File("plan.pdf"), {50});
    EXPECT_THAT(
        OutputOf("pdftotext", {"-layout"}, File("plan.pdf"), {"-"}).toStdString(),
        testing::AllOf(HasSubstr("Haus · Erdgeschoß"), HasSubstr("1:50"), testing::ContainsRegex("1 ?m")));
    const QString svg = OutputOf("pdftocairo", {"-svg"}, File("plan.pdf"), {"-"});
    EXPECT_FALSE(svg.contains("<image"));
    static const QRegularExpression path(
        R"re(stroke-width:([\d.]+);.* d="([^"]*)" transform="matrix\(([-\d.]+),)re");
    static const QRegularExpression point(R"([ML] ([-\d.]+) ([-\d.]+))");
    QRectF all;
    double finest = 1;
    int count = 0;
    for (auto match = path.globalMatch(svg); match.hasNext();) {
        const QRegularExpressionMatch one = match.next();
        const double scale = one.captured(3).toDouble();
        if (std::abs(scale - pointsPerMetre / 50) > 0.01) continue;  // not in the model's metres
        finest = std::min(finest, one.captured(1).toDouble() * scale);
        for (auto points = point.globalMatch(one.captured(2)); points.hasNext(); ++count) {
            const QRegularExpressionMatch place = points.next();
            all |= QRectF(place.captured(1).toDouble(), place.captured(2).toDouble(), 1e-9, 1e-9);
        }
    }
    EXPECT_LE(finest * 25.4 / 72, 0.1301);
    EXPECT_GT(count, 100);
    EXPECT_NEAR(all.width(), drawing.bounds.width(), 0.002);
    EXPECT_NEAR(all.height(), drawing.bounds.height(), 0.002);

    for (const auto& [extent, scale, width] :
         {std::tuple(QSizeF(30, 10), 100, 320), std::tuple(QSizeF(15, 12), 50, 320)}) {
        WritePlanPdf(drawing, "", File("extent.pdf"), {{}, QRectF({}, extent)});
        std::smatch box;
        const std::string pdf = FileBytes(File("extent.pdf"));
        ASSERT_TRUE(std::regex_search(pdf, box, std::regex(R"(/MediaBox \[0 0 (\d+))")));
        EXPECT_NEAR(std::stod(box[1]), width * 72 / 25.4, 1) << "1:" << scale;
    }
}

double Difference(const QImage& one, const QImage& other) {
    const QSize size(300, 200);  // so that a pixel's shift hardly counts
    const auto small = [&](const QImage& picture) {
        return picture.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation)
            .convertToFormat(QImage::Format_Grayscale8);
    };
    const QImage a = small(one), b = small(other);
    double sum = 0;
    for (int y = 0; y < size.height(); ++y)
        for (int x = 0; x < size.width(); ++x)
            sum += std::abs(qGray(a.pixel(x, y)) - qGray(b.pixel(x, y)));
    return sum / size.width() / size.height();
}

TEST_F(PlanFilesTest, PagesOfOneAreaLieOnEachOther) {
    // A post with its left edge in the middle of the area, alone and next to another.
    const auto leftOf = [&](const std::vector<QRectF>& posts) {
        PlanDrawing plan;
        for (const QRectF& post : posts) {
            plan.elements.push_back({.parts = {{{0, 0, 0, 1}, {QPolygonF(post)}}}, .bounds = post});
            plan.bounds |= post;
        }
        WritePlanPicture(plan, "", PictureFormat::png, File("post.png"), {50, QRectF(100, 50, 12, 8)});
        const QImage picture = Picture(File("post.png"));
        const int row = static_cast<int>((10 + 80) * picture.height() / (10 + 160 + 10 + 14));
        int column = picture.width() / 4;
        while (column < picture.width() && qGray(picture.pixel(column, row)) > 240)
            ++column;
        return 1.0 * column / picture.width();
    };
    EXPECT_NEAR(leftOf({{106, 53, 1, 2}}), 0.5, 0.003);
    EXPECT_NEAR(leftOf({{106, 53, 1, 2}, {110, 51, 2, 4}}), 0.5, 0.003);
}

TEST_F(PlanFilesTest, PicturesShowThePageOfThePdf) {
    WritePlanPdf(drawing, "Haus", File("plan.pdf"));
    WritePlanPicture(drawing, "Haus", PictureFormat::png, File("plan.png"));
    WritePlanPicture(drawing, "Haus", PictureFormat::jpeg, File("plan.jpg"));
    EXPECT_THAT(FileBytes(File("plan.png")), testing::StartsWith("\x89PNG\r\n\x1A\n"));
    EXPECT_THAT(FileBytes(File("plan.jpg")), testing::StartsWith("\xFF\xD8\xFF"));
    OutputOf("pdftocairo", {"-png", "-r", "100", "-singlefile"}, File("plan.pdf"),
             {QString::fromStdString(File("page").string())});
    const QImage png = Picture(File("plan.png")), jpeg = Picture(File("plan.jpg"));
    const QImage page = Picture(File("page.png"));
    EXPECT_EQ(png.size(), jpeg.size());
    QImage white(png.size(), png.format());
    white.fill(Qt::white);
    EXPECT_GT(Difference(png, white), 3);
    EXPECT_LT(Difference(png, jpeg), 0.5);
    EXPECT_LT(Difference(png, page), 1.5);
}

TEST_F(PlanFilesTest, AFailureLeavesNoHalfFile) {
    using Reason = PlanFileError::Reason;
    const auto reasons = [](const PlanDrawing& plan, const fs::path& file, const PlanSheet& sheet = {}) {
        std::vector<Reason> found;
        const std::function<void()> writers[] = {
            [&] { WritePlanPdf(plan, "t", file, sheet); },
            [&] { WritePlanPicture(plan, "t", PictureFormat::png, file, sheet); },
            [&] { WritePlanPicture(plan, "t", PictureFormat::jpeg, file, sheet); },
            [&] { WritePlanDwg(plan, "t", file); }};
        for (const auto& write : writers) {
            try {
                write();
            } catch (const PlanFileError& error) {
                found.push_back(error.Why());
                EXPECT_NE(Describe(error, file, {}), Describe(error, file, {Language::german}));
            }
        }
        return found;
    };
    step::WriteFile(File("plan"), "what was there");
    EXPECT_EQ(reasons({}, File("plan")), std::vector(4, Reason::empty));
    EXPECT_EQ(reasons(drawing, File("missing") / "plan"), std::vector(4, Reason::unwritable));
    rlimit old = {};
    getrlimit(RLIMIT_FSIZE, &old);
    const rlimit full = {1000, old.rlim_max};  // as on a full disk
    const auto handler = std::signal(SIGXFSZ, SIG_IGN);
    setrlimit(RLIMIT_FSIZE, &full);
    EXPECT_EQ(reasons(drawing, File("plan")), std::vector(4, Reason::unwritable));
    setrlimit(RLIMIT_FSIZE, &old);
    std::signal(SIGXFSZ, handler);
    EXPECT_EQ(FileBytes(File("plan")), "what was there");
    std::vector<fs::path> left;
    for (const auto& entry : fs::directory_iterator(folder / "."))
        if (entry.is_regular_file()) left.push_back(entry.path().filename());
    EXPECT_THAT(left, testing::ElementsAre("plan"));
    EXPECT_EQ(reasons(drawing, File("plan"), {1.0}), std::vector(3, Reason::tooLarge)) << "a sheet of 1:1";
    EXPECT_THROW(WritePicture({}, PictureFormat::png, File("plan")), PlanFileError);
}

}  // namespace
}  // namespace workbench
