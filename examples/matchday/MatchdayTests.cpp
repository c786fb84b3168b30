#include <poll.h>
#include <pty.h>
#include <spawn.h>
#include <sys/ioctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <Corvane/Testing/LoopbackServer.hpp>

#include "tests/Support/NginxOrigin.hpp"
#include "tests/Support/TemporaryDirectory.hpp"

namespace {

using corvane::testing::LoopbackFault;
using corvane::testing::LoopbackRequest;
using corvane::testing::LoopbackResponse;
using corvane::testing::LoopbackServer;
using testing::AllOf;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

/// The program, running, with its output read by the test.
class Matchday {
  public:
    enum class Output { pipe, terminal };

    explicit Matchday(std::vector<std::string> arguments, Output where = Output::pipe) {
        int outputPipe[2], errorPipe[2];
        const bool isTerminal = where == Output::terminal;
        const winsize size{.ws_row = 24, .ws_col = 80, .ws_xpixel = 0, .ws_ypixel = 0};
        EXPECT_EQ(isTerminal ? openpty(&outputPipe[0], &outputPipe[1], nullptr, nullptr, &size) : pipe(outputPipe), 0);
        EXPECT_EQ(pipe(errorPipe), 0);
        output_ = outputPipe[0];
        errors_ = errorPipe[0];

        posix_spawn_file_actions_t actions;
        posix_spawn_file_actions_init(&actions);
        if (isTerminal) posix_spawn_file_actions_adddup2(&actions, outputPipe[1], STDIN_FILENO);
        posix_spawn_file_actions_adddup2(&actions, outputPipe[1], STDOUT_FILENO);
        posix_spawn_file_actions_adddup2(&actions, errorPipe[1], STDERR_FILENO);
        for (const int end : {outputPipe[0], outputPipe[1], errorPipe[0], errorPipe[1]}) {
            posix_spawn_file_actions_addclose(&actions, end);
        }
        arguments.insert(arguments.begin(), MATCHDAY_PROGRAM);
        std::vector<char*> argv;
        argv.reserve(arguments.size() + 1);
        for (std::string& argument : arguments)
            argv.push_back(argument.data());
        argv.push_back(nullptr);
        EXPECT_EQ(posix_spawn(&process_, MATCHDAY_PROGRAM, &actions, nullptr, argv.data(), environ), 0);
        posix_spawn_file_actions_destroy(&actions);
        close(outputPipe[1]);
        close(errorPipe[1]);
    }

    ~Matchday() {
        if (process_ > 0) {
            kill(process_, SIGTERM);
            wait();
        }
        closeOutput();
        close(errors_);
    }

    Matchday(const Matchday&) = delete;
    Matchday& operator=(const Matchday&) = delete;

    void send(int signal) const { kill(process_, signal); }

    /// Types on the program's terminal.
    void type(std::string_view keys) const {
        EXPECT_EQ(write(output_, keys.data(), keys.size()), static_cast<ssize_t>(keys.size()));
    }

    /// Reads until `text` has come; false when the output ends or pauses for long without it.
    bool waitFor(std::string_view text) {
        pollfd source{output_, POLLIN, 0};
        while (output.find(text) == std::string::npos && source.fd >= 0) {
            constexpr int patience = 20'000;
            const int ready = poll(&source, 1, patience);
            if (ready == 0 || (ready < 0 && errno != EINTR)) return false;
            take(source, output);
        }
        return source.fd >= 0;
    }

    void closeOutput() { close(std::exchange(output_, -1)); }

    /// Reads everything and gives the exit status, 128 and the signal's number for a process that a signal ended.
    int wait() {
        pollfd pipes[] = {{output_, POLLIN, 0}, {errors_, POLLIN, 0}};
        while (pipes[0].fd >= 0 || pipes[1].fd >= 0) {
            if (poll(pipes, 2, -1) < 0 && errno != EINTR) break;
            take(pipes[0], output);
            take(pipes[1], errors);
        }
        int status = 0;
        waitpid(std::exchange(process_, -1), &status, 0);
        return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    }

    std::string output;
    std::string errors;

  private:
    static void take(pollfd& pipe, std::string& text) {
        if (pipe.fd < 0 || pipe.revents == 0) return;
        char buffer[4096];
        const ssize_t count = read(pipe.fd, buffer, sizeof buffer);
        if (count > 0) {
            text.append(buffer, static_cast<std::size_t>(count));
        } else {
            pipe.fd = -1;
        }
    }

    int output_ = -1;
    int errors_ = -1;
    pid_t process_ = -1;
};

TEST(Matchday, FollowsItsOwnMatchday) {
    const corvane::testing::TemporaryDirectory documents;
    Matchday program({"--documents", documents.path()});
    EXPECT_EQ(program.wait(), 0);
    EXPECT_THAT(program.errors, IsEmpty());
    for (const char* expected :
         {"Connection: ", "Coastal League, matchday 12, ", "Kick-offs in ", "in 1h ", "Ashcombe Rovers", "Standings",
          "fixtures   for the ticker   cache asked: yes  it answered: yes",
          "teams      for the details  cache asked: no   it answered: yes", "receipt P-0001",
          "replaced by a newer load", "304, the kept copy", "304, nothing new", "/v1/lineups, code 503",
          "/v1/report, code 9997", "Goal for ", "13 asks of the repositories came to 10 requests, 1 of them got a 304",
          "You were here for 0:0", "requests reported"}) {
        EXPECT_THAT(program.output, HasSubstr(expected));
    }
    EXPECT_THAT(program.output, Not(HasSubstr("\033")));
    // Games that are over do not change: they are painted once at the start and once more on the live page.
    const std::string live = program.output.substr(program.output.find("\nLive\n"));
    EXPECT_EQ(live.find("Torrequín CF"), live.rfind("Torrequín CF"));
    EXPECT_NE(live.find("Port Ellery"), live.rfind("Port Ellery"));
}

TEST(Matchday, KeepsTheChoiceOfTeamsInADocument) {
    const corvane::testing::TemporaryDirectory documents;
    const std::string directory = documents.path();
    Matchday choosing({"--documents", directory, "--team", "kestrel"});
    EXPECT_EQ(choosing.wait(), 0) << choosing.errors;
    Matchday next({"--documents", directory});
    EXPECT_EQ(next.wait(), 0) << next.errors;
    for (const std::string& output : {choosing.output, next.output}) {
        const std::string fixtures = output.substr(0, output.find("Standings"));
        EXPECT_THAT(fixtures, AllOf(HasSubstr("Signed in as Guest, who follows Ashcombe Rovers."),
                                    HasSubstr("Kestrel Bay"), Not(HasSubstr("Port Ellery"))));
    }
    Matchday unable({"--documents", "/proc/nowhere", "--all-teams"});
    EXPECT_EQ(unable.wait(), 1);
    EXPECT_THAT(unable.errors, HasSubstr("cannot keep the filter: No such file or directory"));
}

TEST(Matchday, FiltersAsTheUserTypes) {
    setenv("TERM", "xterm", 1);  // NOLINT(concurrency-mt-unsafe): no other thread runs.
    const corvane::testing::TemporaryDirectory documents;
    Matchday program({"--documents", documents.path(), "--all-teams", "--color", "never"}, Matchday::Output::terminal);
    ASSERT_TRUE(program.waitFor("Kestrel Bay    –")) << program.output;
    ASSERT_TRUE(program.waitFor("Teams: "));
    program.type("kes");
    ASSERT_TRUE(program.waitFor("\033[7;1H\033[K")) << "the second game's row is empty when one game is left";
    program.send(SIGWINCH);
    ASSERT_TRUE(program.waitFor("\033[2J\033[1;1H")) << "all is painted again on a terminal of another size";
    program.type("\x7F, nobody");
    ASSERT_TRUE(program.waitFor("no team is called 'nobody'"));
    program.type("\x04");
    EXPECT_EQ(program.wait(), 0) << program.errors;
    EXPECT_LT(program.output.rfind("\033[?1049l"), program.output.find("You were here for "))
        << "the screen is given back";
    Matchday next({"--documents", documents.path()});
    EXPECT_EQ(next.wait(), 0) << next.errors;
    EXPECT_THAT(next.output, AllOf(HasSubstr("15  Kestrel Bay"), Not(HasSubstr("Port Ellery"))));
}

TEST(Matchday, ShowsColoursAndLogLinesWhenAsked) {
    const corvane::testing::TemporaryDirectory documents;
    Matchday program({"--documents", documents.path(), "--color", "always", "--log", "debug"});
    EXPECT_EQ(program.wait(), 0);
    EXPECT_THAT(program.output, HasSubstr("\033[1m"));
    EXPECT_THAT(program.errors, HasSubstr("asyncOnMain() dispatched from: "));
}

TEST(Matchday, DownloadsADocumentTwice) {
    const std::string date = "Sat, 21 Nov 2026 15:00:00 GMT";
    LoopbackServer server;
    server.route("GET", "/document", [&](const LoopbackRequest& request) -> LoopbackResponse {
        if (request.header("If-Modified-Since") == date) return {.status = 304};
        return LoopbackResponse::json(R"({"title": "\u001b[31mred\u009b"})").with("Last-Modified", date);
    });
    Matchday program({"--url", server.url("/document")});
    EXPECT_EQ(program.wait(), 0) << program.errors;
    EXPECT_THAT(program.output, AllOf(HasSubstr("200 OK, HTTP/1.1"), HasSubstr("application/json"), HasSubstr(date),
                                      HasSubstr("\"title\""), HasSubstr("304 Not Modified")));
    EXPECT_THAT(program.output, AllOf(Not(HasSubstr("\033")), Not(HasSubstr("\xC2\x9B")))) << "a terminal obeys these";
    EXPECT_EQ(server.requestCount(), 2U);
}

TEST(Matchday, DownloadsFromARealOriginOverEveryRoad) {
    NginxOrigin origin;
    ASSERT_THAT(origin.failure(), IsEmpty());
    origin.serve("document.json", R"({"matchday": 12})");

    struct Row {
        NginxOrigin::Endpoint endpoint;
        const char* status;
    };

    for (const Row& row :
         {Row{NginxOrigin::Endpoint::http, "200 OK, HTTP/1.1"}, Row{NginxOrigin::Endpoint::https, "200 OK, HTTP/1.1"},
          Row{NginxOrigin::Endpoint::http2, "200 OK, HTTP/2"}}) {
        Matchday program({"--url", origin.url(row.endpoint, "/plain/document.json"), "--ca-file", origin.caFile()});
        EXPECT_EQ(program.wait(), 0) << program.errors;
        EXPECT_THAT(program.output,
                    AllOf(HasSubstr(row.status), HasSubstr(std::string(NginxOrigin::lastModified)),
                          HasSubstr("\"matchday\": 12"), HasSubstr("304 Not Modified"), HasSubstr("still good")));
    }

    Matchday distrustful({"--url", origin.url(NginxOrigin::Endpoint::https, "/plain/document.json")});
    EXPECT_EQ(distrustful.wait(), 1);
    EXPECT_THAT(distrustful.errors, HasSubstr("certificate"));
}

TEST(Matchday, SaysWhatKeptItFromADocument) {
    LoopbackServer server;
    server.route("GET", "/text", LoopbackResponse{.body = "no JSON"});
    server.route("GET", "/nothing", LoopbackResponse{});
    server.route("GET", "/cut", LoopbackResponse::json("[1, 2, 3]").with(LoopbackFault::truncatedBody));
    LoopbackServer closed;
    closed.refuseConnections();

    struct Row {
        std::vector<std::string> arguments;
        int exitCode;
        const char* complaint;
    };

    const Row rows[] = {
        {{"--url", closed.url("/")}, 1, "connect"},
        {{"--url", server.url("/missing")}, 1, "404 Not Found"},
        {{"--url", server.url("/text")}, 1, "not JSON"},
        {{"--url", server.url("/nothing")}, 1, "the document is empty"},
        {{"--url", server.url("/cut")}, 1, "connection"},
        {{"--url", "nonsense"}, 2, "'nonsense' is not a URL"},
        {{"--url", "ftp://localhost/"}, 2, "neither an http nor an https URL"},
        {{"--url"}, 2, "--url needs a value"},
        {{"--url", "http://localhost/", "--team", "Kes"}, 2, "go without --url"},
        {{"--documents", "/proc/nowhere", "--team", "Nobody"}, 1, "no team is called 'Nobody'"},
        {{"--log", "loud"}, 2, "'loud' is no value of --log; choose one of debug, info, error, off"},
        {{"--unknown"}, 2, "unknown option --unknown"},
        {{"extra"}, 2, "unexpected argument 'extra'"},
        {{"--url", "http://localhost/", "--ca-file", "/nowhere.pem"}, 2, "cannot read the CA file '/nowhere.pem'"},
    };
    for (const Row& row : rows) {
        Matchday program(row.arguments);
        EXPECT_EQ(program.wait(), row.exitCode) << row.complaint;
        EXPECT_THAT(program.errors, AllOf(HasSubstr("matchday: "), HasSubstr(row.complaint)));
    }
}

TEST(Matchday, EndsOnCtrlCWhileItWaits) {
    LoopbackServer server;
    server.route("GET", "/never", LoopbackResponse{.fault = LoopbackFault::neverAnswer});
    Matchday program({"--url", server.url("/never")});
    ASSERT_TRUE(server.waitForRequests(1));
    program.send(SIGINT);
    EXPECT_EQ(program.wait(), 130);
    EXPECT_THAT(program.errors, IsEmpty());
}

TEST(Matchday, StopsQuietlyWhenNobodyReads) {
    const corvane::testing::TemporaryDirectory documents;
    Matchday program({"--documents", documents.path()});
    program.closeOutput();
    EXPECT_EQ(program.wait(), 1);
    EXPECT_THAT(program.errors, IsEmpty());
}

}  // namespace
