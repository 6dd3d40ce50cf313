#include "Workbench/navigator/PlanFiles.hpp"

#include <QSaveFile>
#include <functional>
#include <system_error>

#include "Workbench/dwg/Writer.hpp"
#include "Workbench/navigator/PlanDwg.hpp"
#include "Workbench/navigator/PlanPage.hpp"

namespace workbench {

namespace {

using Reason = PlanFileError::Reason;

constexpr int jpegQuality = 92;

PlanPage PageFor(const PlanDrawing& drawing, const PlanSheet& sheet) {
    if (drawing.elements.empty()) throw PlanFileError(Reason::empty, "nothing is drawn");
    std::optional<PlanPage> page = PlanPage::For(drawing, sheet.scale, sheet.area);
    if (!page) throw PlanFileError(Reason::tooLarge, "the sheet would be too large");
    return *std::move(page);
}

void Save(const std::filesystem::path& file, const std::function<bool(QIODevice&)>& write) {
    QSaveFile out(QString::fromStdString(file.string()));
    // flush: commit() does not notice when the last buffer could not be written.
    if (out.open(QIODevice::WriteOnly) && write(out) && out.flush() && out.commit()) return;
    throw PlanFileError(Reason::unwritable, out.errorString().toStdString());
}

}  // namespace

std::string Describe(const PlanFileError& error, const std::filesystem::path& file, Say say) {
    switch (error.Why()) {
        case Reason::empty:
            return say("There is nothing to see in this plan.", "In diesem Plan ist nichts zu sehen.");
        case Reason::tooLarge:
            return say("The plan is too large for a sheet; choose a coarser scale.",
                       "Der Plan ist zu groß für ein Blatt; wählen Sie einen kleineren Maßstab.");
        case Reason::undrawable:
            return say("The picture cannot be drawn here.", "Das Bild lässt sich hier nicht zeichnen.");
        case Reason::unwritable:
            break;
    }
    return say("The file cannot be written: ", "Die Datei lässt sich nicht schreiben: ") + file.string() +
           " (" + error.what() + ")";
}

void WritePlanDwg(const PlanDrawing& drawing, const std::string& storeyName,
                  const std::filesystem::path& file) {
    if (drawing.elements.empty()) throw PlanFileError(Reason::empty, "nothing is drawn");
    try {
        dwg::Save(DwgOf(drawing, storeyName), file);
    } catch (const std::length_error& error) {
        throw PlanFileError(Reason::tooLarge, error.what());
    } catch (const std::system_error& error) {
        throw PlanFileError(Reason::unwritable, error.code().message());
    }
}

void WritePlanPdf(const PlanDrawing& drawing, const std::string& title, const std::filesystem::path& file,
                  const PlanSheet& sheet) {
    const PlanPage page = PageFor(drawing, sheet);
    Save(file, [&](QIODevice& out) { return page.WritePdf(out, title); });
}

void WritePlanPicture(const PlanDrawing& drawing, const std::string& title, PictureFormat format,
                      const std::filesystem::path& file, const PlanSheet& sheet) {
    WritePicture(PageFor(drawing, sheet).Picture(title), format, file);
}

void WritePicture(const QImage& picture, PictureFormat format, const std::filesystem::path& file) {
    if (picture.isNull()) throw PlanFileError(Reason::undrawable, "there is no picture");
    const bool isJpeg = format == PictureFormat::jpeg;
    Save(file, [&](QIODevice& out) {
        return picture.save(&out, isJpeg ? "JPEG" : "PNG", isJpeg ? jpegQuality : -1);
    });
}

}  // namespace workbench
