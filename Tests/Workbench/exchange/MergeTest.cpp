#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <future>
#include <map>
#include <set>

#include "Workbench/exchange/Exchange.hpp"
#include "Workbench/exchange/Merge.hpp"
#include "Workbench/exchange/Readers.hpp"
#include "Workbench/exchange/UsedGlobalIds.hpp"
#include "Workbench/mesher/MesherProcess.hpp"
#include "Workbench/step/Arguments.hpp"
#include "Workbench/step/StepTexts.hpp"
#include "Workbench/step/Text.hpp"
#include "Workbench/step/Writer.hpp"

namespace workbench {
namespace {

using ProjectPtr = std::shared_ptr<const Project>;
using Boxes = std::map<std::string, Box3>;  // by GlobalId
using Texts = std::map<std::string, std::set<std::string>>;

constexpr double millimetre = 0.001;

/// The models, in a folder of the test's own.
class MergeTest : public testing::Test {
  protected:
    MergeTest() {
        MesherSettings settings;
        settings.script = std::filesystem::path(KESTRANE_SHARE) / "mesher" / "mesher.mjs";
        mesher = std::make_unique<MesherProcess>(settings);
    }

    static ProjectPtr Pavilion() {
        return OpenIfc(std::filesystem::path(KESTRANE_SAMPLES) / "Gartenpavillon.ifc").project;
    }
    static ProjectPtr House() { return OpenIfc("/usr/share/assimp/models/IFC/AC14-FZK-Haus.ifc").project; }

    /// The model with other GlobalIds, so that it is another building, and with these record texts.
    ProjectPtr Other(const Project& project, const std::string& name,
                     const std::map<uint64_t, std::string>& texts = {}) {
        step::Changes changes;
        changes.records = texts;
        for (const step::Record& record : project.Document().Records()) {
            const auto edited = texts.find(record.id);
            const std::string text(edited == texts.end() ? project.Document().Text(record)
                                                         : std::string_view(edited->second));
            const std::string id = step::AsText(step::Argument(text, 0)).value_or("");
            if (!GuidFromGlobalId(id)) continue;
            const std::string other = GlobalIdFromGuid(GuidFromName(id + name));
            changes.records[record.id] = step::WithArgument(text, 0, "'" + other + "'");
        }
        return Written(project, name, changes);
    }
    ProjectPtr Written(const Project& project, const std::string& name, const step::Changes& changes) {
        const std::filesystem::path file = folder / (name + ".ifc");
        EXPECT_TRUE(step::WriteWhole(project.Document(), changes, file));
        return OpenIfc(file).project;
    }

    /// All elements of the sources go into the base; the result is written and read again.
    ProjectPtr Merged(const ProjectPtr& base, const std::vector<ProjectPtr>& sources) {
        UsedGlobalIds ids(base->Document());
        std::vector<NewElement> elements;
        for (const ProjectPtr& source : sources) {
            EXPECT_TRUE(CanMerge(*base, *source));
            for (const Element& like : source->Elements())
                elements.push_back({source, 0, &like, ids.Take(source->GlobalIdOf(like)), std::nullopt});
        }
        const ProjectPtr merged = Merge(*base, elements);
        const std::filesystem::path file = folder / "merged.ifc";
        EXPECT_EQ(SaveIfc(*merged, file).outcome, SaveOutcome::done);
        ProjectPtr opened = OpenIfc(file).project;
        EXPECT_EQ(opened->Elements().size(), merged->Elements().size());
        ExpectSound(*opened);
        return opened;
    }

    static void ExpectSound(const Project& project) {
        const step::Document& document = project.Document();
        EXPECT_EQ(document.ProblemCount(), 0u);
        EXPECT_EQ(document.RecordsOf({"IFCPROJECT"}).size(), 1u);
        EXPECT_LE(document.RecordsOf({"IFCSITE"}).size(), 1u);
        std::set<std::string> ids;
        for (const step::Record& record : document.Records()) {
            const std::string_view text = document.Text(record);
            for (const uint64_t id : step::References(text))
                ASSERT_NE(document.Find(id), nullptr) << text;
            for (const size_t side : {4, 5}) {
                const std::string_view members = step::Argument(text, side);
                EXPECT_TRUE(!document.TypeName(record).starts_with("IFCREL") ||
                            (members != "()" &&
                             (!members.starts_with('(') || members.find('$') == std::string_view::npos)))
                    << text;
            }
            const std::string id = step::AsText(step::Argument(text, 0)).value_or("");
            if (GuidFromGlobalId(id)) {
                EXPECT_TRUE(ids.insert(id).second) << text;
            }
        }
        for (const Element& element : project.Elements())
            EXPECT_TRUE(project.Structure().EffectiveContainerOf(element.record)) << element.name;
    }

    /// As web-ifc sees them, metres.
    Boxes BoxesOf(const Project& project) {
        Boxes boxes;
        std::promise<MeshOutcome> done;
        mesher->Mesh(
            project.Location(),
            [&](MeshBatch batch) {
                for (const ElementMeshPtr& mesh : batch.elements) {
                    const Element* element = project.FindByRecord(mesh->record);
                    if (element) boxes[project.GlobalIdOf(*element)] = mesh->bounds;
                }
            },
            [&](MeshOutcome outcome) { done.set_value(outcome); });
        EXPECT_EQ(done.get_future().get().status, MeshOutcome::Status::Done);
        return boxes;
    }

    static void ExpectAt(const Boxes& merged, const Boxes& source, const Vec3& shift = {}) {
        ASSERT_FALSE(source.empty());
        for (const auto& [id, box] : source) {
            const auto found = merged.find(id);
            ASSERT_NE(found, merged.end()) << id;
            for (const auto& [was, is] : {std::pair(box.min + shift, found->second.min),
                                          std::pair(box.max + shift, found->second.max)}) {
                EXPECT_NEAR(was.x, is.x, millimetre) << id;
                EXPECT_NEAR(was.y, is.y, millimetre) << id;
                EXPECT_NEAR(was.z, is.z, millimetre) << id;
            }
        }
    }

    /// What each element has from relations of these types: texts of what they lead to, without ids.
    static Texts BelongingsOf(const Project& project) {
        const step::Document& document = project.Document();
        Texts texts;
        for (const step::Record* relation : document.RecordsOf(
                 {"IFCRELDEFINESBYPROPERTIES", "IFCRELASSOCIATESMATERIAL", "IFCRELDEFINESBYTYPE"})) {
            const std::string_view text = document.Text(*relation);
            const std::string belonging = Unfolded(document, *step::AsReference(step::Argument(text, 5)), 0);
            for (const uint64_t id : step::References(step::Argument(text, 4)))
                if (const Element* element = project.FindByRecord(id))
                    texts[project.GlobalIdOf(*element)].insert(belonging);
        }
        return texts;
    }
    static std::string Unfolded(const step::Document& document, uint64_t id, int level) {
        const step::Record* record = document.Find(id);
        std::string text(document.TypeName(*record));
        const auto arguments = step::Arguments(document.Text(*record));
        for (size_t n = 0; n < arguments.size(); ++n) {
            const bool isOwn =
                n == 0 && GuidFromGlobalId(step::AsText(arguments[n]).value_or("")).has_value();
            if (isOwn || (n == 1 && text.starts_with("IFCPROPERTYSET"))) continue;
            const auto references = step::References(arguments[n]);
            if (references.empty()) text += "," + std::string(arguments[n]);
            for (const uint64_t next : references)
                if (level < 3) text += "(" + Unfolded(document, next, level + 1) + ")";
        }
        return text;
    }

    static std::set<std::string> GlobalIds(const Project& project) {
        std::set<std::string> ids;
        for (const Element& element : project.Elements())
            ids.insert(project.GlobalIdOf(element));
        return ids;
    }
    static std::map<uint64_t, std::string> WithUnit(const Project& project, const std::string& text) {
        for (const step::Record* record : project.Document().RecordsOf({"IFCSIUNIT"}))
            if (step::AsEnum(step::Argument(project.Document().Text(*record), 1)) == "LENGTHUNIT")
                return {{record->id, "#" + std::to_string(record->id) + "=" + text}};
        return {};
    }

    /// A building in metres with these records.
    ProjectPtr Model(const std::string& name, const std::string& records) const {
        const std::string text =
            "#1=IFCPROJECT('3RrqZXCGb11A3cE9tFPv00',$,$,$,$,$,$,(#2),#3);\n"
            "#2=IFCGEOMETRICREPRESENTATIONCONTEXT($,'Model',3,1.E-5,#4,$);\n#3=IFCUNITASSIGNMENT((#6));\n"
            "#4=IFCAXIS2PLACEMENT3D(#5,$,$);\n#5=IFCCARTESIANPOINT((0.,0.,0.));\n"
            "#6=IFCSIUNIT(*,.LENGTHUNIT.,$,.METRE.);\n"
            "#7=IFCBUILDING('3RrqZXCGb11A3cE9tFPv01',$,'B',$,$,$,$,$,.ELEMENT.,$,$,$);\n"
            "#8=IFCRELAGGREGATES('3RrqZXCGb11A3cE9tFPv02',$,$,$,#1,(#7));\n" +
            records;
        return std::make_shared<const Project>(step::Document::FromBytes(step::StepFile(text)),
                                               folder / (name + ".ifc"));
    }
    static std::string Storey(int id, const std::string& globalId, const std::string& name,
                              double elevation) {
        return "#" + std::to_string(id) + "=IFCBUILDINGSTOREY('" + globalId + "',$,'" + name +
               "',$,$,$,$,$,.ELEMENT.," + step::EncodeReal(elevation) + ");\n#" + std::to_string(id + 1) +
               "=IFCRELAGGREGATES('" + globalId.substr(0, 20) + "xx',$,$,$,#7,(#" + std::to_string(id) +
               "));\n";
    }

    const step::TemporaryFolder folder;
    std::unique_ptr<MesherProcess> mesher;
};

TEST_F(MergeTest, ThreeHousesAreOneWithEverythingThatTheyHad) {
    const ProjectPtr house = House();
    const step::Document& document = house->Document();
    // One is moved away by its site's placement.
    const std::string_view site = document.Text(*document.RecordsOf({"IFCSITE"}).front());
    const uint64_t placement = *step::AsReference(step::Argument(site, 5));
    const uint64_t axes = *step::AsReference(step::Argument(document.Text(*document.Find(placement)), 1));
    const uint64_t point = *step::AsReference(step::Argument(document.Text(*document.Find(axes)), 0));
    const ProjectPtr moved = Other(
        *house, "moved", {{point, "#" + std::to_string(point) + "=IFCCARTESIANPOINT((40.,-25.,1.5));"}});
    const ProjectPtr third = Other(*house, "third");
    const ProjectPtr merged = Merged(house, {moved, third});

    std::set<std::string> ids = GlobalIds(*house);
    ids.merge(GlobalIds(*moved));
    ids.merge(GlobalIds(*third));
    EXPECT_EQ(GlobalIds(*merged), ids);
    EXPECT_EQ(merged->Storeys().size(), house->Storeys().size()) << "same names, same elevations";

    const Boxes boxes = BoxesOf(*merged);
    ExpectAt(boxes, BoxesOf(*house));
    const Boxes ofMoved = BoxesOf(*moved);
    ExpectAt(boxes, ofMoved);
    ExpectAt(boxes, BoxesOf(*third));
    EXPECT_GT(ofMoved.begin()->second.min.x, 20) << "it was moved at all";

    const std::set<std::string> meshed = MeshedByAssimp(merged->Location());
    for (const ProjectPtr& source : {house, moved, third})
        for (const std::string& id : MeshedByAssimp(source->Location()))
            EXPECT_TRUE(meshed.contains(id) || !ids.contains(id)) << id;

    const Texts all = BelongingsOf(*merged);
    for (const ProjectPtr& source : {house, moved, third})
        for (const auto& [id, texts] : BelongingsOf(*source))
            EXPECT_EQ(all.at(id), texts) << id;
}

TEST_F(MergeTest, UnitsAreConverted) {
    const ProjectPtr pavilion = Pavilion();
    const std::map<std::string, std::string> units = {
        {"decametre", "IFCSIUNIT(*,.LENGTHUNIT.,.DECA.,.METRE.);"},
        {"decimetre", "IFCSIUNIT(*,.LENGTHUNIT.,.DECI.,.METRE.);"},
        {"foot",
         "IFCCONVERSIONBASEDUNIT(#90001,.LENGTHUNIT.,'FOOT',#90002);\n#90001=IFCDIMENSIONALEXPONENTS(1,0,0,0,0,0,0);\n"
         "#90002=IFCMEASUREWITHUNIT(IFCLENGTHMEASURE(0.3048),#90003);\n#90003=IFCSIUNIT(*,.LENGTHUNIT.,$,.METRE.);"}};
    for (const auto& [name, unit] : units) {
        SCOPED_TRACE(name);
        const ProjectPtr other = Other(*pavilion, name, WithUnit(*pavilion, unit));
        ASSERT_NE(other->LengthUnit(), 1);
        // The map conversions would move it, too.
        for (const auto& [base, source] : {std::pair(pavilion, other), std::pair(other, pavilion)}) {
            const ProjectPtr merged = Merged(base, {source});
            EXPECT_EQ(merged->Elements().size(), 2 * pavilion->Elements().size());
            Boxes boxes = BoxesOf(*merged);
            const Boxes before = BoxesOf(*source);
            const auto& first = *before.begin();
            ExpectAt(boxes, before, boxes.at(first.first).min - first.second.min);
            ExpectAt(boxes, BoxesOf(*base));
        }
    }
}

TEST_F(MergeTest, ModelsLieWhereTheyAreOnTheMap) {
    const ProjectPtr pavilion = Pavilion();
    const step::Record* conversion = pavilion->Document().RecordsOf({"IFCMAPCONVERSION"}).front();
    std::string text(pavilion->Document().Text(*conversion));
    const double eastings = *step::AsReal(step::Argument(text, 2));
    const double height = *step::AsReal(step::Argument(text, 4));
    text = step::WithArgument(text, 2, std::to_string(eastings + 100));
    text = step::WithArgument(text, 4, std::to_string(height + 7));
    const ProjectPtr east = Other(*pavilion, "east", {{conversion->id, text}});
    const ProjectPtr merged = Merged(pavilion, {east});
    // A hundred metres eastwards, seen from a model that is turned against north.
    const double cosine = *step::AsReal(step::Argument(text, 5)),
                 sine = *step::AsReal(step::Argument(text, 6));
    ExpectAt(BoxesOf(*merged), BoxesOf(*east), {100 * cosine, -100 * sine, 7});
    const std::size_t count = pavilion->Storeys().size();
    ASSERT_EQ(merged->Storeys().size(), 2 * count) << "other storeys";
    EXPECT_NEAR(merged->Storeys()[2 * count - 1].elevation, pavilion->Storeys()[count - 1].elevation + 7,
                millimetre);
    // Coordinates of another system say nothing about this one.
    const step::Record* system = pavilion->Document().RecordsOf({"IFCPROJECTEDCRS"}).front();
    const ProjectPtr elsewhere =
        Other(*east, "elsewhere",
              {{system->id, step::WithArgument(pavilion->Document().Text(*system), 0, "'EPSG:31467'")}});
    ExpectAt(BoxesOf(*Merged(pavilion, {elsewhere})), BoxesOf(*elsewhere));
}

TEST_F(MergeTest, AnEmptyProjectGetsTheStructureToo) {
    const ProjectPtr pavilion = Pavilion();
    const ProjectPtr merged = Merged(Project::Untitled(), {pavilion});
    EXPECT_EQ(GlobalIds(*merged), GlobalIds(*pavilion));
    EXPECT_EQ(merged->Storeys().size(), 2U);
    EXPECT_EQ(merged->Document().RecordsOf({"IFCBUILDING"}).size(), 1U);
    ExpectAt(BoxesOf(*merged), BoxesOf(*pavilion));
}

TEST_F(MergeTest, StoreysAreFoundByIdThenByNameAndElevationElseCreated) {
    const std::string one = "1RrqZXCGb11A3cE9tFPv00", two = "2RrqZXCGb11A3cE9tFPv00";
    const ProjectPtr base = Model("base", Storey(10, one, "EG", 0) + Storey(12, two, "OG", 3));
    struct Case {
        const char* what;
        std::string globalId, name;
        double elevation;
        std::string found;  // "new", or the base's storey
        size_t count;
    };
    for (const Case& one : std::vector<Case>{
             {"GlobalId wins", two, "Dach", 9, "OG", 2},
             {"name and elevation", "0RrqZXCGb11A3cE9tFPv00", "EG", 0.0005, "EG", 2},
             {"same name, other elevation", "0RrqZXCGb11A3cE9tFPv00", "EG", 0.2, "EG", 3},
             {"same elevation, other name", "0RrqZXCGb11A3cE9tFPv00", "Erdgeschoss", 0, "Erdgeschoss", 3}}) {
        SCOPED_TRACE(one.what);
        const ProjectPtr source =
            Model("source",
                  Storey(20, one.globalId, one.name, one.elevation) +
                      "#30=IFCWALL('3RrqZXCGb11A3cE9tFPv30',$,'W',$,$,$,$,$,$);\n"
                      "#31=IFCRELCONTAINEDINSPATIALSTRUCTURE('3RrqZXCGb11A3cE9tFPv31',$,$,$,(#30),#20);\n");
        const NewElement wall{
            source, 0, &source->Elements()[0], source->GlobalIdOf(source->Elements()[0]), {}};
        const ProjectPtr merged = Merge(*base, std::span(&wall, 1));
        ASSERT_EQ(merged->Elements().size(), 1u);
        EXPECT_EQ(merged->Storeys().size(), one.count);
        ASSERT_GE(merged->Elements()[0].storey, 0);
        EXPECT_EQ(merged->Storeys()[static_cast<size_t>(merged->Elements()[0].storey)].name, one.found);
        EXPECT_EQ(merged->Document().RecordsOf({"IFCBUILDING"}).size(), 1u);
    }
}

TEST_F(MergeTest, OneOfSeveralComesAloneAndKeepsItsNames) {
    const ProjectPtr source = Model(
        "walls", Storey(20, "0RrqZXCGb11A3cE9tFPv00", "EG", 0) +
                     "#30=IFCWALL('3RrqZXCGb11A3cE9tFPv30',$,'W',$,$,$,$,$,$);\n"
                     "#31=IFCWALL('3RrqZXCGb11A3cE9tFPv31',$,'V',$,$,$,$,$,$);\n"
                     "#32=IFCRELCONTAINEDINSPATIALSTRUCTURE('3RrqZXCGb11A3cE9tFPv32',$,$,$,(#31,#30),#20);\n"
                     // Names that could be GlobalIds by their length.
                     "#33=IFCPROPERTYSINGLEVALUE('Beton_C25_Fertigteil01',$,IFCLABEL('x'),$);\n"
                     "#34=IFCPROPERTYSET('3RrqZXCGb11A3cE9tFPv34',$,'P',$,(#33));\n"
                     "#35=IFCRELDEFINESBYPROPERTIES('3RrqZXCGb11A3cE9tFPv35',$,$,$,(#30,#31),#34);\n"
                     "#36=IFCMATERIAL('Kalksandstein 17,5 cm1',$,$);\n"
                     "#37=IFCRELASSOCIATESMATERIAL('3RrqZXCGb11A3cE9tFPv37',$,$,$,(#31,#30),#36);\n");
    const Element& like = *source->FindByRecord(30);
    UsedGlobalIds ids(source->Document());
    const NewElement wall{source, 0, &like, ids.Take(source->GlobalIdOf(like)), {}};
    const ProjectPtr merged = Merge(*source, std::span(&wall, 1));
    ExpectSound(*merged);
    ASSERT_EQ(merged->Elements().size(), 3u);
    for (const auto& [type, name, count] :
         {std::tuple("IFCPROPERTYSINGLEVALUE", "'Beton_C25_Fertigteil01'", 2u),
          std::tuple("IFCMATERIAL", "'Kalksandstein 17,5 cm1'", 2u)}) {
        const auto records = merged->Document().RecordsOf({type});
        EXPECT_EQ(records.size(), count);
        for (const step::Record* record : records)
            EXPECT_EQ(step::Argument(merged->Document().Text(*record), 0), name);
    }
    const auto relations = merged->Document().RecordsOf({"IFCRELDEFINESBYPROPERTIES"});
    ASSERT_EQ(relations.size(), 2u);
    EXPECT_EQ(step::References(step::Argument(merged->Document().Text(*relations[1]), 4)).size(), 1u);
}

TEST_F(MergeTest, OnlyModelsOfOneSchemaGoTogether) {
    const ProjectPtr pavilion = Pavilion(), house = House();
    EXPECT_TRUE(CanMerge(*pavilion, *pavilion));
    EXPECT_FALSE(CanMerge(*pavilion, *house));
    EXPECT_FALSE(CanMerge(*house, *pavilion));
    const Project newer(step::Document::FromBytes(step::StepFile("", "IFC4X3_ADD2")), "/models/x.ifc");
    EXPECT_FALSE(CanMerge(newer, newer));
}

}  // namespace
}  // namespace workbench
