#include "Workbench/navigator/Publishing.hpp"

#include <algorithm>
#include <set>
#include <stdexcept>
#include <system_error>

#include "Workbench/api/Application.hpp"
#include "Workbench/exchange/Exchange.hpp"
#include "Workbench/navigator/PlanFiles.hpp"

namespace workbench {

namespace {

namespace fs = std::filesystem;
using Kind = PublisherItem::Kind;

constexpr int mostNameBytes = 180;  // file systems take 255, with extension and the marks of temporary files
constexpr QSize viewSize(1920, 1200);

const char* ExtensionOf(PublishFormat format) {
    switch (format) {
        case PublishFormat::pdf:
            return ".pdf";
        case PublishFormat::dwg:
            return ".dwg";
        case PublishFormat::png:
            return ".png";
        case PublishFormat::jpeg:
            return ".jpg";
        case PublishFormat::ifc:
            break;
    }
    return ".ifc";
}

PictureFormat PictureFormatOf(const PublisherItem& item) {
    return item.format == PublishFormat::jpeg ? PictureFormat::jpeg : PictureFormat::png;
}

std::size_t LeafCount(const PublisherItem& item) {
    if (item.kind != Kind::folder) return 1;
    std::size_t count = 0;
    for (const PublisherItem& child : item.children)
        count += LeafCount(child);
    return count;
}

// Why an item was not published, for a person.
class Problem : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

class Publisher {
  public:
    Publisher(Application& application, std::size_t count)
        : application(application), say{application.GetSettings().language}, count(count) {}

    PublishResult Run(std::span<const PublisherItem* const> items, const fs::path& folder) {
        for (const PublisherItem* item : items)
            Publish(*item, folder);
        return std::move(result);
    }

  private:
    void Publish(const PublisherItem& item, const fs::path& folder) {
        if (item.kind == Kind::folder) {
            const fs::path own = item.children.empty() ? folder : folder / FileNameOf(item.name);
            for (const PublisherItem& child : item.children)
                Publish(child, own);
            return;
        }
        result.stopped = result.stopped || !Report(item, 0);
        if (result.stopped) return;
        fs::path file;
        try {
            if (!item.problem.empty()) throw Problem(item.problem);
            file = FreeFile(item, folder);
            Write(item, file);
            if (!result.stopped) result.files.push_back(file);
        } catch (const Problem& problem) {
            result.failures.push_back({item.name, problem.what()});
        } catch (const PlanFileError& error) {
            result.failures.push_back({item.name, Describe(error, file, say)});
        }
        ++done;
    }

    std::string What(const std::string& name) const { return say("Publishing ", "Wird publiziert: ") + name; }

    bool Report(const PublisherItem& item, double ofItem) {
        const double fraction = (static_cast<double>(done) + ofItem) / static_cast<double>(count);
        return application.TellWorking(What(item.name), std::min(fraction, 0.999));  // 1 would end it
    }

    // Not one that this run has written already.
    fs::path FreeFile(const PublisherItem& item, const fs::path& folder) {
        std::error_code error;
        fs::create_directories(folder, error);
        if (error) {
            throw Problem(say("The folder cannot be made: ", "Der Ordner lässt sich nicht anlegen: ") +
                          folder.string());
        }
        const std::string name = FileNameOf(item.name), extension = ExtensionOf(item.format);
        fs::path file = folder / (name + extension);
        for (int number = 2; !taken.insert(QString::fromStdString(file.string()).toLower()).second; ++number)
            file = folder / (name + " (" + std::to_string(number) + ")" + extension);
        return file;
    }

    void Write(const PublisherItem& item, const fs::path& file) {
        if (item.kind == Kind::model) return WriteModel(item, file);
        if (application.IsShaping()) {
            throw Problem(say("The shapes are still being read. Publish again when they are there.",
                              "Die Formen werden noch gelesen. Publizieren Sie erneut, wenn sie da sind."));
        }
        if (item.kind == Kind::floorPlan) return WritePlan(item, file);
        WritePicture(ViewPicture(item), PictureFormatOf(item), file);
    }

    void WriteModel(const PublisherItem& item, const fs::path& file) {
        const SaveResult saved =
            SaveIfc(application.OpenProject(), file, [&](double part) { return Report(item, part); });
        result.stopped = saved.outcome == SaveOutcome::stopped;
        if (!result.stopped && saved.outcome != SaveOutcome::done)
            throw Problem(Describe(saved, say.language));
    }

    void WritePlan(const PublisherItem& item, const fs::path& file) const {
        const Project& project = application.OpenProject();
        const PlanDrawing drawing = DrawPlan(project, *item.storey, application.ShapesOn(*item.storey));
        const std::string& name = project.Storeys()[*item.storey].name;
        const std::string title = project.Name() + "  ·  " + name;
        if (item.format == PublishFormat::dwg) return WritePlanDwg(drawing, name, file);
        if (item.format == PublishFormat::pdf) return WritePlanPdf(drawing, title, file, {item.scale});
        WritePlanPicture(drawing, title, PictureFormatOf(item), file, {item.scale});
    }

    QImage ViewPicture(const PublisherItem& item) {
        View3D& view = application.HiddenView();
        std::optional<std::unordered_set<std::uint64_t>> shown;
        if (item.storey) {
            shown.emplace();
            for (const ElementMeshPtr& shape : application.ShapesOn(*item.storey))
                shown->insert(shape->record);
        }
        view.ShowOnly(std::move(shown));
        if (view.Bounds().Empty())
            throw Problem(
                say("There is nothing to see in this view.", "In dieser Ansicht ist nichts zu sehen."));
        return view.Render(item.camera.value_or(DefaultCamera(view.Bounds(), viewSize)), viewSize);
    }

    Application& application;
    Say say;
    const std::size_t count;
    std::size_t done = 0;
    std::set<QString> taken;
    PublishResult result;
};

}  // namespace

PublishResult Publish(Application& application, std::span<const PublisherItem* const> items,
                      const std::filesystem::path& folder) {
    std::size_t count = 0;
    for (const PublisherItem* item : items)
        count += LeafCount(*item);
    return Publisher(application, count).Run(items, folder);
}

void BringToFront(Application& application, const PublisherItem& item) {
    if (item.kind == Kind::folder || !item.problem.empty()) return;
    if (item.kind == Kind::floorPlan) {
        application.BringToFront({FrontWindow::Kind::plan, *item.storey});
        return;
    }
    std::vector<API_Guid> shown;
    for (const Element& element : application.OpenProject().Elements())
        if (!item.storey || element.storey == static_cast<int>(*item.storey)) shown.push_back(element.guid);
    item.storey ? application.ShowOnly(shown) : application.ShowAll();
    if (item.kind == Kind::view3D) {
        application.ChangeView([&](ModelWindow& window) {
            window.SetCamera(item.camera.value_or(DefaultCamera(application.ShownBox(), window.Size())));
        });
    }
    application.BringToFront({});
}

std::string FileNameOf(const std::string& name) {
    QString safe;
    for (const QChar sign : QString::fromStdString(name).trimmed())
        safe += sign.category() == QChar::Other_Control || QString("/\\:*?\"<>|").contains(sign) ? '-' : sign;
    if (safe.startsWith('.')) safe[0] = '_';
    safe.truncate(mostNameBytes);
    if (!safe.isEmpty() && safe.back().isHighSurrogate()) safe.chop(1);
    while (safe.toUtf8().size() > mostNameBytes || safe.endsWith('.') || safe.endsWith(' '))
        safe.chop(safe.back().isLowSurrogate() ? 2 : 1);
    return safe.isEmpty() ? "_" : safe.toStdString();
}

}  // namespace workbench
