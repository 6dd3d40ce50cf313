#pragma once

#include <QImage>
#include <QRectF>
#include <filesystem>
#include <optional>
#include <stdexcept>
#include <string>

#include "Workbench/api/Say.hpp"
#include "Workbench/view/PlanDrawing.hpp"

namespace workbench {

enum class PictureFormat { png, jpeg };

/// How large a plan is drawn.
struct PlanSheet {
    std::optional<double> scale = {};  // 100 for 1:100; nothing: the usual one that fits a sheet
    std::optional<QRectF> area = {};   // metres of the model that the page holds; nothing: what is drawn
};

/// Why there is no file. What stood there before is still whole, and no half of the new one is left.
class PlanFileError : public std::runtime_error {
  public:
    enum class Reason {
        empty,       // nothing is drawn
        tooLarge,    // for a sheet at that scale, or for the format
        undrawable,  // no memory for the picture
        unwritable   // the disk is full, the folder missing...; what() is the system's text
    };
    PlanFileError(Reason reason, const std::string& what) : std::runtime_error(what), reason(reason) {}
    Reason Why() const { return reason; }

  private:
    Reason reason;
};
/// For a person.
std::string Describe(const PlanFileError& error, const std::filesystem::path& file, Say say);

/// Each of these writes one file with the same drawing, or throws PlanFileError. Texts are UTF-8.
///
/// AutoCAD 2000 (AC1015) in metres: a layer for each IFC class, and one with the storey's name.
void WritePlanDwg(const PlanDrawing& drawing, const std::string& storeyName,
                  const std::filesystem::path& file);
/// Lines and texts at a true scale; `title` stands below the drawing.
void WritePlanPdf(const PlanDrawing& drawing, const std::string& title, const std::filesystem::path& file,
                  const PlanSheet& sheet = {});
/// The page of the PDF as a picture.
void WritePlanPicture(const PlanDrawing& drawing, const std::string& title, PictureFormat format,
                      const std::filesystem::path& file, const PlanSheet& sheet = {});
/// Any picture, for instance of the 3D window; a null one is `undrawable`.
void WritePicture(const QImage& picture, PictureFormat format, const std::filesystem::path& file);

}  // namespace workbench
