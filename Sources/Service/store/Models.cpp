#include "Service/store/Models.hpp"

namespace service {

namespace {

// LIKE knows no case. A name that is nothing but an extension is no model's.
constexpr auto versionName =
    "SELECT name FROM document WHERE id = ? AND (name LIKE '_%.ifc' OR name LIKE '_%.ifczip')";

constexpr auto versionsOfProject = R"(
    WITH model AS (
        SELECT *, iif(name LIKE '%.ifc', 'ifc', 'ifczip') AS extension FROM document
        WHERE name LIKE '_%.ifc' OR name LIKE '_%.ifczip')
    SELECT folder.id, folder.name, substr(model.name, 1, length(model.name) - length(extension) - 1) AS stem,
        extension, model.id, model.name, version, size, created, author
    FROM folder JOIN model ON model.folder = folder.id
    WHERE folder.project = ?
    ORDER BY stem COLLATE NOCASE, model.name, folder.number, version DESC
)";

}  // namespace

std::optional<std::vector<Model>> Models::OfProject(const std::string& projectId) {
    Transaction transaction(database);
    if (!Statement(transaction, "SELECT 1 FROM project WHERE id = ?", projectId).Step()) return std::nullopt;
    std::vector<Model> models;
    Statement rows(transaction, versionsOfProject, projectId);
    while (rows.Step()) {
        Document version{rows.Text(4),
                         rows.Text(5),
                         rows.Integer(6),
                         rows.Integer(7),
                         Time(std::chrono::seconds(rows.Integer(8))),
                         rows.Text(9),
                         rows.Text(0)};
        const Document* last = models.empty() ? nullptr : &models.back().versions.back();
        if (last == nullptr || last->folderId != version.folderId || last->name != version.name) {
            models.push_back({rows.Text(2), rows.Text(3), {rows.Text(0), rows.Text(1)}, {}});
        }
        models.back().versions.push_back(std::move(version));
    }
    return models;
}

std::optional<std::string> Models::VersionName(const std::string& id) {
    Transaction transaction(database);
    Statement row(transaction, versionName, id);
    return row.Step() ? std::optional(row.Text(0)) : std::nullopt;
}

}  // namespace service
