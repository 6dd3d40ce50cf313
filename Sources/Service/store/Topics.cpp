#include "Service/store/Topics.hpp"

#include "Service/store/Secrets.hpp"

namespace service {

namespace {

constexpr auto columns =
    "SELECT id, title, description, closed, created, modified, author, "
    "(SELECT count(*) FROM viewpoint WHERE topic = topic.id), "
    "(SELECT snapshot FROM viewpoint WHERE topic = topic.id ORDER BY number DESC LIMIT 1) FROM topic ";

Time TimeOf(int64_t seconds) {
    return Time(std::chrono::seconds(seconds));
}

int64_t Seconds(Time time) {
    return time.time_since_epoch().count();
}

std::vector<Topic> Select(Transaction& transaction, const std::string& condition, const std::string& id) {
    Statement rows(transaction, (columns + condition).c_str(), id);
    std::vector<Topic> topics;
    while (rows.Step()) {
        topics.push_back({rows.Text(0),
                          {rows.Text(1), rows.Text(2), rows.Integer(3) != 0},
                          TimeOf(rows.Integer(4)),
                          TimeOf(rows.Integer(5)),
                          rows.Text(6),
                          rows.Integer(7),
                          rows.Text(8)});
    }
    return topics;
}

bool HasProject(Transaction& transaction, const std::string& id) {
    return Statement(transaction, "SELECT 1 FROM project WHERE id = ?", id).Step();
}

void Touch(Transaction& transaction, const std::string& topicId, Time now) {
    Statement(transaction, "UPDATE topic SET modified = ? WHERE id = ?", Seconds(now), topicId).Step();
}

}  // namespace

std::optional<std::vector<Topic>> Topics::OfProject(const std::string& projectId) {
    Transaction transaction(database);
    if (!HasProject(transaction, projectId)) return std::nullopt;
    return Select(transaction, "WHERE project = ? ORDER BY number DESC", projectId);
}

std::optional<Topic> Topics::Add(const std::string& projectId, const TopicText& text,
                                 const std::string& author, Time now) {
    Transaction transaction(database);
    if (!HasProject(transaction, projectId)) return std::nullopt;
    Topic topic{NewId(), text, now, now, author, 0, ""};
    Statement(transaction,
              "INSERT INTO topic (id, project, title, description, closed, created, modified, author) "
              "VALUES (?, ?, ?, ?, ?, ?, ?, ?)",
              topic.id, projectId, text.title, text.description, int64_t{text.closed}, Seconds(now),
              Seconds(now), author)
        .Step();
    transaction.Commit();
    return topic;
}

std::optional<Topic> Topics::Find(const std::string& topicId) {
    Transaction transaction(database);
    const auto found = Select(transaction, "WHERE id = ?", topicId);
    return found.empty() ? std::nullopt : std::optional(found.front());
}

void Topics::Change(const std::string& topicId, const TopicText& text, Time now) {
    Transaction transaction(database);
    Statement(transaction, "UPDATE topic SET title = ?, description = ?, closed = ? WHERE id = ?", text.title,
              text.description, int64_t{text.closed}, topicId)
        .Step();
    Touch(transaction, topicId, now);
    transaction.Commit();
}

std::vector<Viewpoint> Topics::Viewpoints(const std::string& topicId) {
    Transaction transaction(database);
    Statement rows(
        transaction,
        "SELECT id, snapshot, size, created, author FROM viewpoint WHERE topic = ? ORDER BY number", topicId);
    std::vector<Viewpoint> viewpoints;
    while (rows.Step()) {
        viewpoints.push_back(
            {rows.Text(0), topicId, rows.Text(1), rows.Integer(2), TimeOf(rows.Integer(3)), rows.Text(4)});
    }
    return viewpoints;
}

void Topics::AddViewpoint(const Viewpoint& viewpoint) {
    Transaction transaction(database);
    Statement(transaction,
              "INSERT INTO viewpoint (id, topic, snapshot, size, created, author) VALUES (?, ?, ?, ?, ?, ?)",
              viewpoint.id, viewpoint.topicId, viewpoint.snapshot, viewpoint.size, Seconds(viewpoint.created),
              viewpoint.author)
        .Step();
    Touch(transaction, viewpoint.topicId, viewpoint.created);
    transaction.Commit();
}

bool Topics::HasViewpoint(const std::string& viewpointId) {
    Transaction transaction(database);
    return Statement(transaction, "SELECT 1 FROM viewpoint WHERE id = ?", viewpointId).Step();
}

bool Topics::RemoveViewpoint(const std::string& viewpointId, Time now) {
    Transaction transaction(database);
    std::string topicId;
    {
        Statement row(transaction, "SELECT topic FROM viewpoint WHERE id = ?", viewpointId);
        if (!row.Step()) return false;
        topicId = row.Text(0);
    }
    Statement(transaction, "DELETE FROM viewpoint WHERE id = ?", viewpointId).Step();
    Touch(transaction, topicId, now);
    transaction.Commit();
    return true;
}

}  // namespace service
