#include "SyntheticModel.hpp"

#include <fstream>
#include <stdexcept>
#include <string>

#include "Workbench/project/GlobalId.hpp"

namespace benchmarks {
namespace {

constexpr size_t wallsPerStorey = 2000;
constexpr size_t wallsPerRow = 50;
constexpr double storeyHeight = 3.2;

/// Collects records and hands them on to the file in large pieces.
class Pen {
  public:
    explicit Pen(const std::filesystem::path& file) : out(file, std::ios::binary) {}

    size_t Record(const std::string& text) {
        pending += '#' + std::to_string(++last) + "=" + text + ";\n";
        if (pending.size() > (1 << 20)) Flush();
        return last;
    }
    void Raw(const std::string& text) { pending += text; }
    size_t Size() const { return written + pending.size(); }
    void Flush() {
        out.write(pending.data(), static_cast<std::streamsize>(pending.size()));
        if (!out) throw std::runtime_error("the synthetic model cannot be written");
        written += pending.size();
        pending.clear();
    }

  private:
    std::ofstream out;
    std::string pending;
    size_t written = 0, last = 0;
};

std::string Ref(size_t id) {
    return '#' + std::to_string(id);
}

thread_local std::string modelName;

std::string Root(const std::string& kind, size_t number, const std::string& name) {
    const API_Guid guid = workbench::GuidFromName(modelName + kind + std::to_string(number));
    return "'" + workbench::GlobalIdFromGuid(guid) + "',$," + name + ",$";
}

struct Context {
    size_t body = 0, profile = 0, up = 0;
};

size_t WriteWall(Pen& pen, const Context& context, size_t number, size_t storeyPlacement) {
    const size_t place = number % wallsPerStorey;
    const size_t row = place / wallsPerRow, column = place % wallsPerRow;
    const std::string x = std::to_string(static_cast<double>(column) * 5.5);
    const std::string y = std::to_string(static_cast<double>(row) * 3.25);
    const size_t point = pen.Record("IFCCARTESIANPOINT((" + x + "," + y + ",0.))");
    const size_t axes = pen.Record("IFCAXIS2PLACEMENT3D(" + Ref(point) + ",$,$)");
    const size_t placement = pen.Record("IFCLOCALPLACEMENT(" + Ref(storeyPlacement) + "," + Ref(axes) + ")");
    const size_t solid =
        pen.Record("IFCEXTRUDEDAREASOLID(" + Ref(context.profile) + ",$," + Ref(context.up) + ",2.8)");
    const size_t body = pen.Record("IFCSHAPEREPRESENTATION(" + Ref(context.body) + ",'Body','SweptSolid',(" +
                                   Ref(solid) + "))");
    const size_t shape = pen.Record("IFCPRODUCTDEFINITIONSHAPE($,$,(" + Ref(body) + "))");
    const std::string name = "'Au\\X2\\00DF\\X0\\enwand " + std::to_string(number) + "'";
    const size_t wall = pen.Record("IFCWALL(" + Root("wall", number, name) + ",$," + Ref(placement) + "," +
                                   Ref(shape) + ",'W-" + std::to_string(number) + "',.SOLIDWALL.)");
    const size_t outside = pen.Record("IFCPROPERTYSINGLEVALUE('IsExternal',$,IFCBOOLEAN(.T.),$)");
    const size_t rating = pen.Record("IFCPROPERTYSINGLEVALUE('FireRating',$,IFCLABEL('F90'),$)");
    const size_t transmittance =
        pen.Record("IFCPROPERTYSINGLEVALUE('ThermalTransmittance',$,IFCTHERMALTRANSMITTANCEMEASURE(0.24),$)");
    const size_t set = pen.Record("IFCPROPERTYSET(" + Root("set", number, "'Pset_WallCommon'") + ",(" +
                                  Ref(outside) + "," + Ref(rating) + "," + Ref(transmittance) + "))");
    pen.Record("IFCRELDEFINESBYPROPERTIES(" + Root("defines", number, "$") + ",(" + Ref(wall) + ")," +
               Ref(set) + ")");
    return wall;
}

}  // namespace

size_t WriteSyntheticModel(const std::filesystem::path& file, size_t bytes, const std::string& name) {
    modelName = name;
    Pen pen(file);
    pen.Raw(
        "ISO-10303-21;\nHEADER;\nFILE_DESCRIPTION(('ViewDefinition [ReferenceView_V1.2]'),'2;1');\n"
        "FILE_NAME('synthetic.ifc','2025-06-01T12:00:00',(''),(''),'','','');\nFILE_SCHEMA(('IFC4'));\nENDSEC;\n"
        "DATA;\n");
    const size_t metre = pen.Record("IFCSIUNIT(*,.LENGTHUNIT.,$,.METRE.)");
    const size_t units = pen.Record("IFCUNITASSIGNMENT((" + Ref(metre) + "))");
    const size_t zero = pen.Record("IFCCARTESIANPOINT((0.,0.,0.))");
    const size_t origin = pen.Record("IFCAXIS2PLACEMENT3D(" + Ref(zero) + ",$,$)");
    Context context;
    context.body =
        pen.Record("IFCGEOMETRICREPRESENTATIONCONTEXT('Body','Model',3,1.E-5," + Ref(origin) + ",$)");
    context.up = pen.Record("IFCDIRECTION((0.,0.,1.))");
    context.profile = pen.Record("IFCRECTANGLEPROFILEDEF(.AREA.,$,$,5.,0.24)");
    const size_t project = pen.Record("IFCPROJECT(" + Root("project", 0, "'Synthetic'") + ",$,$,$,(" +
                                      Ref(context.body) + ")," + Ref(units) + ")");
    const size_t building =
        pen.Record("IFCBUILDING(" + Root("building", 0, "'Building'") + ",$,$,$,$,.ELEMENT.,$,$,$)");
    pen.Record("IFCRELAGGREGATES(" + Root("aggregates", 0, "$") + "," + Ref(project) + ",(" + Ref(building) +
               "))");

    std::string storeys;
    size_t walls = 0;
    for (size_t storey = 0; pen.Size() < bytes; ++storey) {
        const std::string height = std::to_string(static_cast<double>(storey) * storeyHeight);
        const size_t point = pen.Record("IFCCARTESIANPOINT((0.,0.," + height + "))");
        const size_t axes = pen.Record("IFCAXIS2PLACEMENT3D(" + Ref(point) + ",$,$)");
        const size_t placement = pen.Record("IFCLOCALPLACEMENT($," + Ref(axes) + ")");
        const size_t id =
            pen.Record("IFCBUILDINGSTOREY(" + Root("storey", storey, "'" + std::to_string(storey) + "'") +
                       ",$," + Ref(placement) + ",$,$,.ELEMENT.," + height + ")");
        storeys += (storeys.empty() ? "" : ",") + Ref(id);
        std::string members;
        for (size_t i = 0; i < wallsPerStorey && pen.Size() < bytes; ++i) {
            members += (members.empty() ? "" : ",") + Ref(WriteWall(pen, context, walls++, placement));
        }
        pen.Record("IFCRELCONTAINEDINSPATIALSTRUCTURE(" + Root("contains", storey, "$") + ",(" + members +
                   ")," + Ref(id) + ")");
    }
    pen.Record("IFCRELAGGREGATES(" + Root("aggregates", 1, "$") + "," + Ref(building) + ",(" + storeys +
               "))");
    pen.Raw("ENDSEC;\nEND-ISO-10303-21;\n");
    pen.Flush();
    return walls;
}

}  // namespace benchmarks
