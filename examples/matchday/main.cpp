#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <clocale>
#include <csignal>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <system_error>
#include <utility>

#include <fmt/format.h>

#include <Corvane/DomainSpecific/Tessaly/Networking/SimpleHttpManager.hpp>
#include <Corvane/Platform/Application/BackgroundTasks.hpp>
#include <Corvane/Platform/Dispatch/RunLoop.hpp>
#include <Corvane/Platform/Files/FileManager.hpp>
#include <Corvane/Platform/Logging/Logging.hpp>

#include "Backend.hpp"
#include "DocumentReport.hpp"
#include "Keyboard.hpp"
#include "Options.hpp"
#include "Scoreboard.hpp"
#include "SignalWatcher.hpp"
#include "TeamBook.hpp"
#include "Terminal.hpp"

namespace matchday {
namespace {

enum ExitCode { success = 0, failed = 1, wrongUsage = 2, signalled = 128 };

/// How long requests that protect themselves from an early exit may take, in seconds.
constexpr double patience = 5;

void complain(std::string_view sentence) {
    const std::string line = fmt::format("matchday: {}\n", sentence);
    [[maybe_unused]] const auto ignored = write(STDERR_FILENO, line.data(), line.size());
}

/// A program may be started with its standard descriptors closed. The next socket would take their number and get
/// what is printed, so they are filled with something that refuses to be written to.
void fillStandardDescriptors() {
    for (int descriptor = 0; descriptor >= 0 && descriptor <= STDERR_FILENO;) {
        descriptor = open("/dev/null", O_RDONLY);
        if (descriptor > STDERR_FILENO) close(descriptor);
    }
}

std::shared_ptr<corvane::SimpleHttpManager> httpManager(const Options& options) {
    if (options.caFile.empty()) return corvane::SimpleHttpManager::sharedInstance();
    auto configuration = corvane::URLSessionConfiguration::defaultConfiguration();
    configuration.caFile = options.caFile;
    return corvane::SimpleHttpManager::make(std::move(configuration));
}

int run(const Options& options) {
    int exitCode = success;
    bool isOver = false;
    const auto stop = [&exitCode, &isOver](int code) {
        if (std::exchange(isOver, true)) return;
        exitCode = code;
        corvane::RunLoop::main().stop();
    };
    std::function<void()> onResize;
    const SignalWatcher signals([&stop, &onResize](int signal) {
        if (signal != SIGWINCH) return stop(signalled + signal);
        if (onResize) onResize();
    });

    Terminal terminal(options.colors);
    const auto onEnd = [&stop](const std::optional<std::string>& failure) {
        if (failure) complain(printable(*failure));
        stop(failure ? failed : success);
    };
    if (!options.documents.empty()) corvane::FileManager::setDocumentsDirectory(options.documents);
    if (options.teams) {
        if (const auto kept = TeamBook().showOnly(*options.teams); !kept) {
            complain(kept.error());
            return failed;
        }
    }
    std::optional<Backend> backend;
    std::shared_ptr<Scoreboard> scoreboard;
    std::shared_ptr<DocumentReport> report;
    if (options.url) {
        report = DocumentReport::make(terminal, httpManager(options), *options.url, onEnd);
        report->start();
    } else {
        backend.emplace();
        scoreboard = Scoreboard::make(terminal, backend->url(""), onEnd);
        scoreboard->start();
        onResize = [&terminal, &scoreboard] {
            terminal.measure();
            if (scoreboard) scoreboard->repaint();
        };
    }
    if (scoreboard && terminal.isInteractive()) {
        Keyboard().run([&isOver] { return isOver; }, [&scoreboard](char key) { scoreboard->press(key); });
    } else if (!isOver) {
        corvane::RunLoop::main().run();
    }

    // Nobody listens any more; what protects itself from an early exit gets its time.
    if (scoreboard) scoreboard->close();
    scoreboard.reset();
    report.reset();
    corvane::BackgroundTasks::waitForRunning(patience);

    if (terminal.isWritable() || exitCode != success) return exitCode;
    // A reader that has seen enough, as in a pipe to head, needs no explanation.
    if (terminal.failure() != EPIPE) {
        complain(fmt::format("cannot write the output: {}", std::generic_category().message(terminal.failure())));
    }
    return failed;
}

int runProgram(int argc, char** argv) {
    const auto options = Options::parse(argc, argv);
    if (!options) {
        complain(options.error() + "\nTry 'matchday --help'.");
        return wrongUsage;
    }
    if (options->showsHelp || options->showsVersion) {
        Terminal terminal(options->colors);
        std::string_view text = options->showsHelp ? Options::help() : "matchday " MATCHDAY_VERSION "\n";
        terminal.line(text.substr(0, text.size() - 1));
        return terminal.isWritable() ? success : failed;
    }
    corvane::Logging::setLevel(options->logLevel);
    return run(*options);
}

}  // namespace
}  // namespace matchday

int main(int argc, char** argv) {
    matchday::fillStandardDescriptors();
    std::signal(SIGPIPE, SIG_IGN);  // A write that nobody reads is an error like any other.
    return matchday::runProgram(argc, argv);
}
