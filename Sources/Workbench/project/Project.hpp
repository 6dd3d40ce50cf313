#pragma once

#include <atomic>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "API_Guid.hpp"
#include "Workbench/project/GlobalId.hpp"
#include "Workbench/project/GuidIndex.hpp"
#include "Workbench/project/Structure.hpp"
#include "Workbench/step/Document.hpp"

namespace workbench {

/// A building element (wall, window, furniture, part of an assembly...): no space, opening, grid or
/// annotation.
struct Element {
    API_Guid guid =
        APINULLGuid;  // the host's; unique in the project and the same each time the file is opened
    API_Guid externalIfcId =
        APINULLGuid;       // the file's GlobalId when another program made it, null when the host did
    uint64_t record = 0;   // id of its STEP record
    std::string ifcClass;  // "IfcWallStandardCase"
    std::string name;
    std::string idText;  // the element ID as people see it, "W-003"
    int storey = -1;     // place in Project::Storeys(), -1 when in none
};

struct Storey {
    API_Guid guid = APINULLGuid;
    uint64_t record = 0;
    std::string name;
    double elevation = 0;  // as the file calls it, metres
    double floor = 0;      // metres, in the space of the shapes: where it is placed, else its elevation
};

/// The opened model. Never changes once made, so any thread may ask it.
class Project {
  public:
    /// A new model without elements.
    static std::shared_ptr<const Project> Untitled();
    using ExternalIds = std::unordered_map<uint64_t, API_Guid>;
    /// The model in a document that was read from `location`. Some elements, by record, may have come from
    /// another file where they had another GlobalId.
    Project(std::shared_ptr<const step::Document> document, std::filesystem::path location,
            ExternalIds foreignIds = {});

    /// In file order.
    const std::vector<Element>& Elements() const { return elements; }
    /// From the lowest to the highest.
    const std::vector<Storey>& Storeys() const { return storeys; }

    /// Null when there is no such element.
    const Element* FindByGuid(const API_Guid& guid) const;
    const Element* FindByRecord(uint64_t record) const;
    /// A file may use one GlobalId several times.
    std::vector<const Element*> FindByExternalIfcId(const API_Guid& ifcId) const;
    /// What was given to the constructor.
    const ExternalIds& ForeignIds() const { return foreignIds; }
    /// The GUID that the only element with this GlobalId has here.
    API_Guid GuidFor(const std::string& globalId) const;
    /// The GlobalId text as it stands in the file.
    std::string GlobalIdOf(const Element& element) const;

    const step::Document& Document() const { return *document; }
    std::shared_ptr<const step::Document> SharedDocument() const { return document; }
    const ProductStructure& Structure() const { return structure; }

    /// The file's name without its extension, empty when untitled.
    std::string Name() const;
    /// The name in the model itself (IfcProject).
    const std::string& IfcProjectName() const { return ifcProjectName; }
    const std::filesystem::path& Location() const { return location; }
    bool IsUntitled() const { return location.empty(); }
    /// "IFC2X3", "IFC4", "IFC4X3_ADD2"...
    const std::string& Schema() const { return schema; }
    /// Metres in one length unit of the file.
    double LengthUnit() const { return lengthUnit; }
    /// The program that made the file, with its version.
    const std::string& AuthoringApplication() const { return authoringApplication; }
    /// True when that program is the host itself: its elements keep their GUIDs.
    bool IsHostAuthored() const { return hostAuthored; }

  private:
    std::shared_ptr<const step::Document> document;
    std::filesystem::path location;
    ExternalIds foreignIds;
    ProductStructure structure;
    std::string ifcProjectName, schema, authoringApplication;
    double lengthUnit = 1;
    bool hostAuthored = false;
    std::vector<Storey> storeys;
    std::vector<Element> elements;
    GuidIndex byGuid;
    mutable std::atomic<size_t> lastFound = 0;  // by GUID: who asks for one often asks for the next one then
    std::unordered_multimap<API_Guid, size_t, GuidHash> byExternalIfcId;
    std::unordered_map<uint64_t, size_t> byRecord;

    void ReadContext();
    void ReadStoreys();
    void ReadElements();
};

}  // namespace workbench
