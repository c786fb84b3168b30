#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <thread>
#include <unordered_set>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <Corvane/Concurrency/CommandWith.hpp>
#include <Corvane/Testing/LogRecorder.hpp>
#include <Corvane/Testing/VirtualClock.hpp>

namespace corvane {

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using testing::LogRecorder;
using testing::VirtualClock;

constexpr SourceFileContext declared("/app/Scores/Page.cpp", "init()", 7);
constexpr SourceFileContext performed("/app/Scores/List.cpp", "tapped()", 42);
constexpr std::string_view places =
    ", declared in function init()\n\t\tin: Page.cpp:7,\ninvoked from function tapped()\n\t\tin: List.cpp:42";

/// What an action notes: its argument, and whether it ran on the main thread.
struct Note {
    int value = 0;
    bool isOnMain = false;

    friend bool operator==(const Note&, const Note&) = default;
};

struct Notes {
    void add(int value) {
        // Actions run one after the other here.
        all.push_back({value, std::this_thread::get_id() == mainThread});
    }

    std::thread::id mainThread = std::this_thread::get_id();
    std::vector<Note> all;
};

std::vector<CommandWith<int>> commandsOfAllKinds(Notes& notes, const CommandOptions& options) {
    const auto action = [&notes](int value) { notes.add(value); };
    const auto asyncAction = [&notes](const int& value) -> Task<> {
        co_await Task<>::yield();
        notes.add(value);
    };
    return {command<int>(options, action, declared), commandOnMain<int>(options, action, declared),
            CommandWith<int>::command(options, asyncAction, declared),
            CommandWith<int>::commandOnMain(options, asyncAction, declared)};
}

}  // namespace

TEST(CommandWith, RunsWhereItBelongsAndSaysSo) {
    const struct {
        std::string_view kind;
        bool runsOnMain, isDirectOnMain;
        std::string_view onMain, elsewhere, waiting;
    } rows[] = {
        {"sendable", false, true, "Sendable", "Sendable", "Sendable"},
        {"mainActor", true, true, "directly on Main Thread", "dispatched to Main Thread", "at MainActor"},
        {"asyncOnCooperativePool", false, false, "at Cooperative Task", "at Cooperative Task", "at Cooperative Pool"},
        {"asyncOnMainActor", true, false, "at MainActor Task", "at MainActor Task", "at MainActor"},
    };

    VirtualClock clock;
    Notes notes;
    const auto named = commandsOfAllKinds(notes, {.name = "open"});
    const auto unnamed = commandsOfAllKinds(notes, {});
    for (std::size_t i = 0; i < std::size(rows); ++i) {
        const auto& row = rows[i];
        SCOPED_TRACE(row.kind);
        EXPECT_EQ(named[i].commandWithIsolation().description(), row.kind);
        const bool isSendable = i == 0;

        LogRecorder log;
        const auto expectLine = [&](std::string_view road, std::string_view rest) {
            ASSERT_EQ(log.entries().size(), 1U);
            const auto entry = log.entries()[0];
            EXPECT_EQ(entry.message, "perform Command (" + std::string(road) + ")" + std::string(rest));
            EXPECT_EQ(entry.category, road == "dispatched to Main Thread" ? "Concurrency" : "Command");
            EXPECT_EQ(entry.level, LogLevel::debug);
            log.clear();
        };

        named[i].perform(1, performed);
        if (row.runsOnMain || isSendable) {  // the shared pool may have been faster
            EXPECT_EQ(notes.all.size(), row.isDirectOnMain ? 1U : 0U);
        }
        clock.settle();
        EXPECT_THAT(notes.all, ElementsAre(Note{1, row.runsOnMain || isSendable}));
        expectLine(row.onMain, ", named: open");

        notes.all.clear();
        DispatchQueue::global().async([&, copy = unnamed[i]] { copy.perform(2, performed); });
        clock.settle();
        EXPECT_THAT(notes.all, ElementsAre(Note{2, row.runsOnMain}));
        expectLine(row.elsewhere, places);

        notes.all.clear();
        bool isEnded = false;
        const auto waiting = [&, copy = std::optional(unnamed[i])]() mutable -> Task<> {
            Task<> performance = copy->performAndWait(3, performed);
            copy.reset();
            co_await std::move(performance);
            isEnded = true;
        };
        spawn(waiting, {.executor = DispatchQueue::main()});
        clock.settle();
        EXPECT_TRUE(isEnded);
        EXPECT_THAT(notes.all, ElementsAre(Note{3, row.runsOnMain || isSendable}));
        expectLine(row.waiting, places);

        notes.all.clear();
        const auto wrapped = Command::wrapAction(std::optional(unnamed[i]), 4).value();
        EXPECT_EQ(wrapped.id(), unnamed[i].id());
        EXPECT_EQ(wrapped.commandWithIsolation().description(), row.kind);
        DispatchQueue::global().async([&] { wrapped.perform(performed); });
        clock.settle();
        EXPECT_THAT(notes.all, ElementsAre(Note{4, row.runsOnMain}));
        expectLine(row.elsewhere, places);
        notes.all.clear();
    }
    EXPECT_EQ(Command::wrapAction(std::optional<CommandWith<int>>(), 4), std::nullopt);
}

TEST(CommandWith, IsPerformedWithoutALineWhenSilent) {
    VirtualClock clock;
    const LogRecorder log;
    Notes notes;
    for (const auto& command : commandsOfAllKinds(notes, {.isSilent = true})) {
        command.perform(1);
        clock.settle();
        DispatchQueue::global().async([&] { command.perform(2); });
        clock.settle();
        spawn(command.performAndWait(3));
        clock.settle();
    }
    EXPECT_EQ(notes.all.size(), 12U);
    EXPECT_THAT(log.messages(), IsEmpty());
}

TEST(CommandWith, IsIdentifiedByItsNameOrItsPlace) {
    const auto inOnePlace = [] { return command([] {}); };
    const Command reload = command({.name = "reload"}, [] {});
    EXPECT_EQ(reload, Command::commandOnMain({.name = "reload", .isSilent = true}, []() -> Task<> { co_return; }));
    EXPECT_NE(reload, command({.name = "load"}, [] {}));
    EXPECT_EQ(inOnePlace(), inOnePlace());
    EXPECT_NE(inOnePlace(), command([] {}));
    EXPECT_NE(inOnePlace(), reload);

    const Command elsewhere = command([] {}, declared);
    EXPECT_TRUE(elsewhere.id().isHashID());
    EXPECT_EQ(elsewhere.source(), declared);
    EXPECT_THAT(reload.debugDescription(),
                ::testing::StartsWith("Command with ID: customID(\"reload\"), declared in function TestBody()\n"));
    EXPECT_EQ(elsewhere.debugDescription(),
              "Command with ID: " + elsewhere.id().description() + ", declared in function init()\n\t\tin: Page.cpp:7");
    EXPECT_EQ(CommandID::hashID(-42).description(), "hashID(-42)");
    const std::unordered_set<CommandID> ids{CommandID::hashID(1), CommandID::customID("1"), CommandID::hashID(1)};
    EXPECT_EQ(ids.size(), 2U);
}

TEST(CommandWith, KeepsWhatItsActionNeedsUntilItHasEnded) {
    VirtualClock clock;
    std::optional<CommandWith<std::string>> load;
    std::string loaded;
    load = command<std::string>([&, prefix = std::string(100, '-')](const std::string& name) -> Task<> {
        load.reset();
        if (!co_await Task<>::sleep(1)) co_return;
        loaded = prefix + name;
    });
    load->perform(std::string(100, 'x'));
    clock.advance(2);
    EXPECT_EQ(loaded, std::string(100, '-') + std::string(100, 'x'));

    std::optional<Command> tap;
    int taps = 0;
    tap = command([&, count = std::make_unique<int>(1)] {
        tap.reset();
        taps += *count;
    });
    tap->perform();
    EXPECT_EQ(taps, 1);
}

TEST(CommandWith, IsCancelledWithTheTaskThatWaits) {
    VirtualClock clock;
    bool isCancelled = false;
    const auto command = commandOnMain([&]() -> Task<> {
        const auto slept = co_await Task<>::sleep(10);
        isCancelled = !slept && !Task<>::isNotCancelled();
    });
    const auto handle = spawn(command.performAndWait());
    clock.advance(1);
    handle.cancel();
    clock.settle();
    EXPECT_TRUE(isCancelled);
}

}  // namespace corvane
