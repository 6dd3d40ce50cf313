#include <getopt.h>
#include <sys/stat.h>
#include <termios.h>
#include <unistd.h>

#include <charconv>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <optional>
#include <regex>
#include <string>
#include <string_view>

#include "Service/Server.hpp"

namespace fs = std::filesystem;

namespace {

constexpr int defaultPort = 8465;
constexpr int exitFailed = 1;
constexpr int exitUsage = 2;
constexpr int maxSessionMinutes = 60 * 24 * 366;

constexpr std::string_view usage =
    R"(Usage: kestrane-service [--port N] [--data DIR] [--web DIR] [--bind ADDRESS] [--session-minutes N]
                        [--allow-origin ORIGIN]...
       kestrane-service --add-user NAME [--data DIR]

Keeps projects, their documents and the Kestrane page for this machine.

  --port N             port to listen on; 0 takes a free one (default 8465)
  --data DIR           where documents and accounts are kept
                       (default $XDG_DATA_HOME/kestrane-service or ~/.local/share/kestrane-service)
  --web DIR            the page's files (default ../share/kestrane/WebApp beside this program)
  --bind ADDRESS       address to listen on (default 127.0.0.1: this machine only)
  --allow-origin ORIGIN
                       let pages of this origin call the service, such as http://localhost:5173
                       (default: only the service's own page); may be given several times
  --session-minutes N  how long a sign-in lasts (default 720)
  --add-user NAME      add an account, or give it a new password, read from standard input
  --help               show this text

A new data folder has the account "demo" with the password "demo".
)";

struct Arguments {
    service::Options options;
    std::optional<std::string> newAccount;
    bool help = false;
};

class UsageError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

fs::path DefaultDataDir() {
    const char* dataHome = std::getenv("XDG_DATA_HOME");
    if (dataHome != nullptr && *dataHome == '/') return fs::path(dataHome) / "kestrane-service";
    const char* home = std::getenv("HOME");
    return fs::path(home != nullptr ? home : ".") / ".local/share/kestrane-service";
}

fs::path DefaultWebRoot() {
    return fs::read_symlink("/proc/self/exe").parent_path().parent_path() / "share/kestrane/WebApp";
}

int Number(const std::string& option, std::string_view text, int smallest, int largest) {
    int number = 0;
    const auto [rest, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc{} || rest != text.data() + text.size() || number < smallest || number > largest) {
        throw UsageError("--" + option + " takes a number from " + std::to_string(smallest) + " to " +
                         std::to_string(largest) + ".");
    }
    return number;
}

// Compared as it is: refuses what no browser sends, as it would never match.
std::string Origin(const std::string& text) {
    static const std::regex form("https?://[^/?#@*\\sA-Z]+");
    if (!std::regex_match(text, form)) {
        throw UsageError(
            "--allow-origin takes an origin such as http://localhost:5173: lower case, no path.");
    }
    return text;
}

Arguments Parse(int count, char** values) {
    const option known[] = {{"port", required_argument, nullptr, 'p'},
                            {"data", required_argument, nullptr, 'd'},
                            {"web", required_argument, nullptr, 'w'},
                            {"bind", required_argument, nullptr, 'b'},
                            {"allow-origin", required_argument, nullptr, 'o'},
                            {"session-minutes", required_argument, nullptr, 's'},
                            {"add-user", required_argument, nullptr, 'u'},
                            {"help", no_argument, nullptr, 'h'},
                            {nullptr, 0, nullptr, 0}};
    Arguments arguments;
    service::Options& options = arguments.options;
    options.port = defaultPort;
    options.dataDir = DefaultDataDir();
    options.webRoot = DefaultWebRoot();
    for (int found = 0; (found = getopt_long(count, values, "", known, nullptr)) != -1;) {
        switch (found) {
            case 'p':
                options.port = Number("port", optarg, 0, 65535);
                break;
            case 'd':
                options.dataDir = optarg;
                break;
            case 'w':
                options.webRoot = optarg;
                break;
            case 'b':
                options.bindAddress = optarg;
                break;
            case 'o':
                options.allowedOrigins.push_back(Origin(optarg));
                break;
            case 's':
                options.sessionLifetime =
                    std::chrono::minutes(Number("session-minutes", optarg, 1, maxSessionMinutes));
                break;
            case 'u':
                arguments.newAccount = optarg;
                break;
            case 'h':
                arguments.help = true;
                break;
            default:
                throw UsageError("See kestrane-service --help.");
        }
    }
    if (optind < count) throw UsageError(std::string("Unexpected: ") + values[optind]);
    return arguments;
}

std::string ReadPassword() {
    const bool typed = isatty(STDIN_FILENO) != 0;
    termios before{};
    if (typed) {
        std::cerr << "Password: " << std::flush;
        tcgetattr(STDIN_FILENO, &before);
        termios silent = before;
        silent.c_lflag &= ~static_cast<tcflag_t>(ECHO);
        tcsetattr(STDIN_FILENO, TCSAFLUSH, &silent);
    }
    std::string password;
    std::getline(std::cin, password);
    if (typed) {
        tcsetattr(STDIN_FILENO, TCSAFLUSH, &before);
        std::cerr << '\n';
    }
    return password;
}

void AddUser(const Arguments& arguments) {
    service::SetPassword(arguments.options.dataDir, *arguments.newAccount, ReadPassword());
    std::cout << "The account " << *arguments.newAccount << " has its password." << std::endl;
}

std::string Url(const service::Options& options, int port) {
    const bool ip6 = options.bindAddress.find(':') != std::string::npos;
    const std::string host = ip6 ? "[" + options.bindAddress + "]" : options.bindAddress;
    return "http://" + host + ":" + std::to_string(port) + "/";
}

// Until SIGINT or SIGTERM.
void Run(const service::Options& options) {
    sigset_t ending;
    sigemptyset(&ending);
    sigaddset(&ending, SIGINT);
    sigaddset(&ending, SIGTERM);
    pthread_sigmask(SIG_BLOCK, &ending, nullptr);  // for the server's threads, too
    if (!fs::exists(options.webRoot / "index.html")) {
        std::cerr << "kestrane-service: there is no page in " << options.webRoot.native()
                  << "; choose its folder with --web.\n";
    }
    service::Server server(options);
    server.Start();
    std::cout << "The Kestrane service listens at " << Url(options, server.Port()) << std::endl;
    int signal = 0;
    sigwait(&ending, &signal);
    server.Stop();
}

}  // namespace

int main(int count, char** values) {
    umask(S_IRWXG | S_IRWXO);
    std::signal(SIGPIPE, SIG_IGN);
    std::signal(SIGXFSZ, SIG_IGN);  // so that a file size limit is answered like a full disk
    try {
        const Arguments arguments = Parse(count, values);
        if (arguments.help) {
            std::cout << usage;
        } else if (arguments.newAccount) {
            AddUser(arguments);
        } else {
            Run(arguments.options);
        }
        return EXIT_SUCCESS;
    } catch (const UsageError& error) {
        std::cerr << "kestrane-service: " << error.what() << "\n";
        return exitUsage;
    } catch (const std::exception& error) {
        std::cerr << "kestrane-service: " << error.what() << "\n";
        return exitFailed;
    }
}
