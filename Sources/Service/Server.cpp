#include "Service/Server.hpp"

#include <utility>

#include "Service/Api.hpp"
#include "Service/Errors.hpp"
#include "Service/Names.hpp"
#include "Service/http/Files.hpp"
#include "Service/http/HttpServer.hpp"
#include "Service/http/Listener.hpp"
#include "Service/store/Accounts.hpp"
#include "Service/store/Database.hpp"
#include "Service/store/FolderLock.hpp"
#include "Service/store/Library.hpp"
#include "Service/store/Models.hpp"
#include "Service/store/Topics.hpp"
#include "Service/store/Vault.hpp"

namespace service {

namespace fs = std::filesystem;

namespace {

fs::path MadeFolder(const fs::path& folder) {
    const bool made = fs::create_directories(folder);
    if (made) fs::permissions(folder, fs::perms::owner_all);
    return folder;
}

fs::path RecordsFile(const fs::path& dataDir) {
    return dataDir / "records.sqlite";
}

// Runs what needs the data folder; its failures become start errors.
template <typename Work>
auto InDataFolder(const fs::path& dataDir, const Work& work) {
    try {
        return work();
    } catch (const StartError&) {
        throw;
    } catch (const std::exception& error) {
        throw StartError("The data folder " + dataDir.native() + " cannot be used: " + error.what());
    }
}

}  // namespace

// In the order of need: torn down backwards, the connections first.
struct Server::Running {
    explicit Running(const Options& options)
        : listener(options.bindAddress, options.port),
          lock(MadeFolder(options.dataDir)),
          database(RecordsFile(options.dataDir)),
          accounts(database),
          library(database),
          models(database),
          topics(database),
          vault(options.dataDir),
          webRoot(options.webRoot),
          api({accounts, library, models, topics, vault, webRoot, listener.IsLoopback(),
               options.allowedOrigins, options.sessionLifetime, options.now}),
          http(listener.Socket(), [this](const httplib::Request& request) { api.Guard(request); }) {
        vault.Sweep([this](const std::string& id) { return library.Knows(id) || topics.HasViewpoint(id); });
        if (library.Projects().empty()) library.AddProject("Demo project", {"Models", "Documents"});
        if (accounts.Empty()) accounts.SetPassword("demo", "demo");
        api.Register(http);
        listener.Run([this](int socket) { http.Serve(socket); });
    }

    ~Running() { listener.Stop(); }

    Listener listener;
    FolderLock lock;
    Database database;
    Accounts accounts;
    Library library;
    Models models;
    Topics topics;
    Vault vault;
    WebRoot webRoot;
    Api api;
    HttpServer http;
};

Server::Server(Options options) : options(std::move(options)) {}

Server::~Server() = default;

void Server::Start() {
    running = InDataFolder(options.dataDir, [this] { return std::make_unique<Running>(options); });
}

int Server::Port() const {
    return running ? running->listener.Port() : 0;
}

void Server::Stop() {
    running.reset();
}

void SetPassword(const fs::path& dataDir, const std::string& account, const std::string& password) {
    InDataFolder(dataDir, [&] {
        try {
            CheckName(account);
        } catch (const HttpError& error) {
            throw StartError(std::string("This account name cannot be used. ") + error.what());
        }
        if (password.empty()) throw StartError("The password is empty.");
        Database database(RecordsFile(MadeFolder(dataDir)));
        Accounts(database).SetPassword(account, password);
    });
}

}  // namespace service
