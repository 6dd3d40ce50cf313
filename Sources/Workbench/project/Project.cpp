#include "Workbench/project/Project.hpp"

#include <algorithm>
#include <cctype>
#include <unordered_set>
#include <utility>

#include "Workbench/project/Classes.hpp"
#include "Workbench/project/Placement.hpp"
#include "Workbench/project/Units.hpp"
#include "Workbench/step/Arguments.hpp"

namespace workbench {
namespace {

constexpr std::string_view emptyModel = R"(ISO-10303-21;
HEADER;
FILE_DESCRIPTION(('ViewDefinition [ReferenceView_V1.2]'),'2;1');
FILE_NAME('','1970-01-01T00:00:00',(''),(''),'','','');
FILE_SCHEMA(('IFC4'));
ENDSEC;
DATA;
#1=IFCPROJECT('0mVyF7z2L5MQpXqQ0aJ3u1',$,$,$,$,$,$,(#2),#5);
#2=IFCGEOMETRICREPRESENTATIONCONTEXT($,'Model',3,1.E-5,#3,$);
#3=IFCAXIS2PLACEMENT3D(#4,$,$);
#4=IFCCARTESIANPOINT((0.,0.,0.));
#5=IFCUNITASSIGNMENT((#6,#7,#8,#9));
#6=IFCSIUNIT(*,.LENGTHUNIT.,$,.METRE.);
#7=IFCSIUNIT(*,.AREAUNIT.,$,.SQUARE_METRE.);
#8=IFCSIUNIT(*,.VOLUMEUNIT.,$,.CUBIC_METRE.);
#9=IFCSIUNIT(*,.PLANEANGLEUNIT.,$,.RADIAN.);
ENDSEC;
END-ISO-10303-21;
)";

bool ContainsIgnoringCase(std::string_view text, std::string_view lowerCase) {
    const auto same = [](char a, char b) { return std::tolower(static_cast<unsigned char>(a)) == b; };
    return std::search(text.begin(), text.end(), lowerCase.begin(), lowerCase.end(), same) != text.end();
}

/// "2F0B4D2C-...", in whatever groups, and with the "ID" that one program puts before it.
bool LooksLikeGuid(std::string_view text) {
    if (text.starts_with("ID")) text.remove_prefix(2);
    const auto digits = std::ranges::count_if(text, [](unsigned char c) { return std::isxdigit(c) != 0; });
    const auto dashes = std::ranges::count(text, '-');
    return digits == 32 && static_cast<size_t>(digits + dashes) == text.size();
}

/// The arguments of a rooted record, as many as this needs.
struct Rooted {
    std::string globalId, name;
    std::vector<std::string_view> arguments;

    Rooted(const step::Document& document, const step::Record& record)
        : arguments(step::Arguments(document.Text(record))) {
        globalId = Text(0);
        name = Text(2);
    }
    std::string Text(size_t n) const {
        return n < arguments.size() ? step::AsText(arguments[n]).value_or("") : std::string();
    }
};

/// Gives each GlobalId its host GUID; of several with the same one, the later get GUIDs of their own.
class GuidMaker {
  public:
    explicit GuidMaker(bool keepsGlobalIds) : keepsGlobalIds(keepsGlobalIds) {}

    API_Guid Make(const std::string& globalId) {
        for (int occurrence = 1;; ++occurrence) {
            const auto own = keepsGlobalIds && occurrence == 1 ? GuidFromGlobalId(globalId) : std::nullopt;
            const API_Guid guid = own.value_or(GuidFromName(globalId + '/' + std::to_string(occurrence)));
            if (guid != APINULLGuid && used.insert(guid).second) return guid;
        }
    }

  private:
    bool keepsGlobalIds;
    std::unordered_set<API_Guid, GuidHash> used;
};

}  // namespace

std::shared_ptr<const Project> Project::Untitled() {
    return std::make_shared<Project>(step::Document::FromBytes(emptyModel), std::filesystem::path());
}

Project::Project(std::shared_ptr<const step::Document> source, std::filesystem::path file,
                 ExternalIds foreign)
    : document(std::move(source)),
      location(std::move(file)),
      foreignIds(std::move(foreign)),
      structure(*document) {
    ReadContext();
    ReadStoreys();
    ReadElements();
}

void Project::ReadContext() {
    const step::Header& header = document->FileHeader();
    if (!header.schemas.empty()) schema = header.schemas.front();

    uint64_t history = 0;
    if (const auto projects = document->RecordsOf({"IFCPROJECT"}); !projects.empty()) {
        const Rooted project(*document, *projects.front());
        ifcProjectName = project.name;
        const std::string_view text = document->Text(*projects.front());
        history = step::AsReference(step::Argument(text, 1)).value_or(0);
        lengthUnit = LengthUnitOf(*document, step::AsReference(step::Argument(text, 8)).value_or(0));
    }

    const step::Record* application = nullptr;
    if (const step::Record* owner = document->Find(history)) {
        application =
            document->Find(step::AsReference(step::Argument(document->Text(*owner), 1)).value_or(0));
    }
    if (!application) {
        const auto applications = document->RecordsOf({"IFCAPPLICATION"});
        if (!applications.empty()) application = applications.front();
    }
    authoringApplication = header.originatingSystem;
    std::string identifier;
    if (application) {
        const std::string_view text = document->Text(*application);
        const std::string version = step::AsText(step::Argument(text, 1)).value_or("");
        authoringApplication = step::AsText(step::Argument(text, 2)).value_or("");
        identifier = step::AsText(step::Argument(text, 3)).value_or("");
        if (!version.empty() && !authoringApplication.ends_with(version))
            authoringApplication += " " + version;
    }
    hostAuthored = ContainsIgnoringCase(authoringApplication, "archicad") ||
                   ContainsIgnoringCase(identifier, "archicad");
}

void Project::ReadStoreys() {
    GuidMaker guids(hostAuthored);
    for (const step::Record* record : document->RecordsOf({"IFCBUILDINGSTOREY"})) {
        const Rooted storey(*document, *record);
        const std::string_view text = document->Text(*record);
        const double elevation = step::AsReal(step::Argument(text, 9)).value_or(0);
        const uint64_t placement = step::AsReference(step::Argument(text, 5)).value_or(0);
        storeys.push_back({.guid = guids.Make(storey.globalId),
                           .record = record->id,
                           .name = storey.name.empty() ? storey.Text(7) : storey.name,
                           .elevation = elevation * lengthUnit,
                           .floor = HeightOf(*document, placement).value_or(elevation) * lengthUnit});
    }
    // Some programs place all storeys alike, and only their elevations tell them apart.
    const auto differ = [&](double Storey::*value) {
        return std::ranges::any_of(storeys,
                                   [&](const Storey& storey) { return storey.*value != storeys[0].*value; });
    };
    if (!differ(&Storey::floor) && differ(&Storey::elevation))
        for (Storey& storey : storeys)
            storey.floor += storey.elevation;
    std::ranges::stable_sort(storeys, {},
                             [](const Storey& storey) { return std::pair(storey.elevation, storey.floor); });
}

void Project::ReadElements() {
    std::unordered_map<uint64_t, int> storeyPlaces;
    for (size_t i = 0; i < storeys.size(); ++i)
        storeyPlaces.emplace(storeys[i].record, static_cast<int>(i));
    std::vector<std::string_view> classes;
    for (const std::string& type : document->TypeNames())
        classes.push_back(ElementClass(type));

    GuidMaker guids(hostAuthored);
    for (const step::Record& record : document->Records()) {
        if (classes[record.type].empty() || document->Find(record.id) != &record) continue;
        const Rooted product(*document, record);
        const API_Guid fileGuid = GuidFromGlobalId(product.globalId).value_or(APINULLGuid);
        Element element;
        element.guid = guids.Make(product.globalId);
        const auto foreign = foreignIds.find(record.id);
        if (foreign != foreignIds.end()) {
            element.externalIfcId = foreign->second;
        } else if (element.guid != fileGuid) {
            element.externalIfcId = fileGuid;
        }
        element.record = record.id;
        element.ifcClass = classes[record.type];
        element.name = product.name;
        const std::string tag = product.Text(element.ifcClass == "IfcProxy" ? 8 : 7);
        element.idText = tag.empty() || LooksLikeGuid(tag) ? element.name : tag;
        if (const auto storey = structure.StoreyOf(record.id)) element.storey = storeyPlaces[*storey];

        byRecord.emplace(record.id, elements.size());
        if (element.externalIfcId != APINULLGuid) {
            byExternalIfcId.emplace(element.externalIfcId, elements.size());
        }
        elements.push_back(std::move(element));
    }
    byGuid = GuidIndex(elements.size(), [this](size_t place) { return elements[place].guid; });
}

const Element* Project::FindByGuid(const API_Guid& guid) const {
    const size_t last = lastFound.load(std::memory_order_relaxed);
    for (const size_t place : {last, last + 1}) {
        if (place >= elements.size() || elements[place].guid != guid) continue;
        lastFound.store(place, std::memory_order_relaxed);
        return &elements[place];
    }
    const size_t place = byGuid.Find(guid, [this](size_t at) { return elements[at].guid; });
    if (place == GuidIndex::none) return nullptr;
    lastFound.store(place, std::memory_order_relaxed);
    return &elements[place];
}

const Element* Project::FindByRecord(uint64_t record) const {
    const auto found = byRecord.find(record);
    return found == byRecord.end() ? nullptr : &elements[found->second];
}

std::vector<const Element*> Project::FindByExternalIfcId(const API_Guid& ifcId) const {
    std::vector<const Element*> found;
    const auto [first, behind] = byExternalIfcId.equal_range(ifcId);
    for (auto entry = first; entry != behind; ++entry)
        found.push_back(&elements[entry->second]);
    std::ranges::sort(found);
    return found;
}

API_Guid Project::GuidFor(const std::string& globalId) const {
    return GuidMaker(hostAuthored).Make(globalId);
}

std::string Project::GlobalIdOf(const Element& element) const {
    const step::Record* record = document->Find(element.record);
    return record ? step::AsText(step::Argument(document->Text(*record), 0)).value_or("") : "";
}

std::string Project::Name() const {
    return location.stem().string();
}

}  // namespace workbench
