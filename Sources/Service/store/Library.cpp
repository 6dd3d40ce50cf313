#include "Service/store/Library.hpp"

#include "Service/store/Secrets.hpp"

namespace service {

namespace {

std::vector<Named> ReadNamed(Statement& rows) {
    std::vector<Named> all;
    while (rows.Step())
        all.push_back({rows.Text(0), rows.Text(1)});
    return all;
}

bool HasProject(Transaction& transaction, const std::string& id) {
    return Statement(transaction, "SELECT 1 FROM project WHERE id = ?", id).Step();
}

Named InsertFolder(Transaction& transaction, const std::string& projectId, const std::string& name) {
    Named folder{NewId(), name};
    Statement(transaction, "INSERT INTO folder (id, project, name) VALUES (?, ?, ?)", folder.id, projectId,
              name)
        .Step();
    return folder;
}

std::optional<std::string> FirstText(Database& database, const char* sql, const std::string& id) {
    Transaction transaction(database);
    Statement row(transaction, sql, id);
    return row.Step() ? std::optional(row.Text(0)) : std::nullopt;
}

int64_t Seconds(Time time) {
    return time.time_since_epoch().count();
}

}  // namespace

std::vector<Named> Library::Projects() {
    Transaction transaction(database);
    Statement rows(transaction, "SELECT id, name FROM project ORDER BY number");
    return ReadNamed(rows);
}

Named Library::AddProject(const std::string& name, const std::vector<std::string>& folders) {
    Named project{NewId(), name};
    Transaction transaction(database);
    Statement(transaction, "INSERT INTO project (id, name) VALUES (?, ?)", project.id, name).Step();
    for (const std::string& folder : folders)
        InsertFolder(transaction, project.id, folder);
    transaction.Commit();
    return project;
}

std::optional<std::vector<Named>> Library::Folders(const std::string& projectId) {
    Transaction transaction(database);
    if (!HasProject(transaction, projectId)) return std::nullopt;
    Statement rows(transaction, "SELECT id, name FROM folder WHERE project = ? ORDER BY number", projectId);
    return ReadNamed(rows);
}

std::optional<Named> Library::AddFolder(const std::string& projectId, const std::string& name) {
    Transaction transaction(database);
    if (!HasProject(transaction, projectId)) return std::nullopt;
    Named folder = InsertFolder(transaction, projectId, name);
    transaction.Commit();
    return folder;
}

bool Library::HasFolder(const std::string& folderId) {
    return FirstText(database, "SELECT id FROM folder WHERE id = ?", folderId).has_value();
}

std::vector<Document> Library::Documents(const std::string& folderId) {
    Transaction transaction(database);
    // SQLite takes the other columns from the row that has the maximum.
    Statement rows(transaction,
                   "SELECT id, name, max(version), size, created, author FROM document WHERE folder = ? "
                   "GROUP BY name ORDER BY number DESC",
                   folderId);
    std::vector<Document> documents;
    while (rows.Step()) {
        documents.push_back({rows.Text(0), rows.Text(1), rows.Integer(2), rows.Integer(3),
                             Time(std::chrono::seconds(rows.Integer(4))), rows.Text(5), folderId});
    }
    return documents;
}

Document Library::AddDocument(const Upload& upload, const std::string& folderId) {
    Transaction transaction(database);
    Statement last(transaction, "SELECT max(version) FROM document WHERE folder = ? AND name = ?", folderId,
                   upload.name);
    last.Step();
    Document document{upload.id,     upload.name, last.Integer(0) + 1, upload.size, upload.created,
                      upload.author, folderId};
    Statement(transaction,
              "INSERT INTO document (id, folder, name, version, size, created, author) "
              "VALUES (?, ?, ?, ?, ?, ?, ?)",
              document.id, folderId, document.name, document.version, document.size,
              Seconds(document.created), document.author)
        .Step();
    transaction.Commit();
    return document;
}

void Library::AddResource(const Upload& upload) {
    Transaction transaction(database);
    Statement(transaction, "INSERT INTO resource (id, name, size, created, author) VALUES (?, ?, ?, ?, ?)",
              upload.id, upload.name, upload.size, Seconds(upload.created), upload.author)
        .Step();
    transaction.Commit();
}

std::optional<std::string> Library::DocumentName(const std::string& id) {
    return FirstText(database, "SELECT name FROM document WHERE id = ?", id);
}

std::optional<std::string> Library::ResourceName(const std::string& id) {
    return FirstText(database, "SELECT name FROM resource WHERE id = ?", id);
}

bool Library::Knows(const std::string& id) {
    return DocumentName(id) || ResourceName(id);
}

}  // namespace service
