#include <unordered_set>

#include <gmock/gmock.h>

#include <Corvane/Concurrency/CommandWith.hpp>
#include <Corvane/Testing/LogRecorder.hpp>
#include <Corvane/Testing/VirtualClock.hpp>

namespace corvane {

namespace {

using testing::LogRecorder;
using testing::VirtualClock;

constexpr SourceFileContext declared("/app/Scores/Page.cpp", "init()", 7);
constexpr SourceFileContext performed("/app/Scores/List.cpp", "tapped()", 42);

/// "1 on main" for an action that got 1 and ran there. Actions run one after the other here.
using Notes = std::vector<std::string>;

std::vector<CommandWith<int>> commandsOfAllKinds(Notes& notes, const CommandOptions& options) {
    const auto action = [&notes](int value) {
        notes.push_back(std::to_string(value) + (Thread::isMainThread() ? " on main" : " elsewhere"));
    };
    const auto asyncAction = [action](const int& value) -> Task<> {
        co_await Task<>::yield();
        action(value);
    };
    return {command<int>(options, action, declared), commandOnMain<int>(options, action, declared),
            CommandWith<int>::command(options, asyncAction, declared),
            CommandWith<int>::commandOnMain(options, asyncAction, declared)};
}

}  // namespace

TEST(CommandWith, RunsWhereItBelongsAndSaysSo) {
    const struct {
        std::string_view kind, fromMain, lineFromMain, fromElsewhere, lineFromElsewhere, lineWhenAwaited;
    } rows[] = {
        {"sendable", "on main", "Sendable", "elsewhere", "Sendable", "Sendable"},
        {"mainActor", "on main", "directly on Main Thread", "on main", "dispatched to Main Thread", "at MainActor"},
        {"asyncOnCooperativePool", "elsewhere", "at Cooperative Task", "elsewhere", "at Cooperative Task",
         "at Cooperative Pool"},
        {"asyncOnMainActor", "on main", "at MainActor Task", "on main", "at MainActor Task", "at MainActor"},
    };

    VirtualClock clock;
    Notes notes;
    const auto named = commandsOfAllKinds(notes, {.name = "open"});
    const auto unnamed = commandsOfAllKinds(notes, {});
    const auto silent = commandsOfAllKinds(notes, {.isSilent = true});
    for (std::size_t i = 0; i < std::size(rows); ++i) {
        const auto& row = rows[i];
        LogRecorder log;
        const auto expect = [&](int value, std::string_view where, std::string_view road, std::string_view rest) {
            SCOPED_TRACE(std::string(row.kind) + ' ' + std::to_string(value));
            clock.settle();
            EXPECT_THAT(notes, ::testing::ElementsAre(std::to_string(value) + ' ' + std::string(where)));
            notes.clear();
            ASSERT_EQ(log.entries().size(), 1U);
            EXPECT_EQ(log.entries()[0].message, "perform Command (" + std::string(road) + ")" + std::string(rest));
            EXPECT_EQ(log.entries()[0].category, road == "dispatched to Main Thread" ? "Concurrency" : "Command");
            EXPECT_EQ(log.entries()[0].level, LogLevel::debug);
            log.clear();
        };
        constexpr std::string_view places =
            ", declared in function init()\n\t\tin: Page.cpp:7,\ninvoked from function tapped()\n\t\tin: List.cpp:42";
        EXPECT_EQ(unnamed[i].commandWithIsolation().description(), row.kind);

        named[i].perform(1, performed);
        if (i < 2) {
            EXPECT_EQ(notes.size(), 1U) << "a callback runs before perform returns";
        }
        expect(1, row.fromMain, row.lineFromMain, ", named: open");

        std::optional copy(unnamed[i]);
        DispatchQueue::global().async([&] { copy->perform(2, performed); });
        expect(2, row.fromElsewhere, row.lineFromElsewhere, places);

        const auto task = spawn(onMain([performance = std::make_shared<Task<>>(copy->performAndWait(3, performed))] {
            return std::move(*performance);
        }));
        copy.reset();
        expect(3, row.fromMain, row.lineWhenAwaited, places);
        EXPECT_TRUE(task.isEnded());

        const auto wrapped = Command::wrapAction(std::optional(unnamed[i]), 4).value();
        EXPECT_EQ(wrapped.id(), unnamed[i].id());
        DispatchQueue::global().async([&] { wrapped.perform(performed); });
        expect(4, row.fromElsewhere, row.lineFromElsewhere, places);

        silent[i].perform(5, performed);
        clock.settle();
        spawn(silent[i].performAndWait(5, performed));
        clock.settle();
        EXPECT_EQ(std::exchange(notes, {}).size(), 2U);
        EXPECT_THAT(log.entries(), ::testing::IsEmpty());
    }
    EXPECT_EQ(Command::wrapAction(std::optional<CommandWith<int>>(), 4), std::nullopt);
}

TEST(CommandWith, IsIdentifiedByItsNameOrItsPlace) {
    const auto inOnePlace = [] { return command([] {}); };
    const Command reload = command({.name = "reload"}, [] {});
    EXPECT_EQ(reload, Command::commandOnMain({.name = "reload", .isSilent = true}, []() -> Task<> { co_return; }));
    EXPECT_NE(reload, command({.name = "load"}, [] {}));
    EXPECT_EQ(inOnePlace(), inOnePlace());
    EXPECT_NE(inOnePlace(), command([] {}));
    EXPECT_EQ(command(
                  {.name = "reload"}, [] {}, declared)
                  .debugDescription(),
              "Command with ID: customID(\"reload\"), declared in function init()\n\t\tin: Page.cpp:7");
    EXPECT_EQ(CommandID::hashID(-42).description(), "hashID(-42)");
    const std::unordered_set<CommandID> ids{CommandID::hashID(1), CommandID::customID("1"), CommandID::hashID(1)};
    EXPECT_EQ(ids.size(), 2U);
}

TEST(CommandWith, KeepsWhatItsActionNeedsUntilItHasEnded) {
    VirtualClock clock;
    std::string outcome;
    std::optional<CommandWith<std::string>> load;
    load = command<std::string>([&, prefix = std::string(100, '-')](const std::string& name) -> Task<> {
        load.reset();
        const auto slept = co_await Task<>::sleep(1);
        outcome = prefix + name + (slept && Task<>::isNotCancelled() ? "" : ", cancelled");
    });
    const auto again = load;
    load->perform(std::string(100, 'x'));
    clock.advance(1);
    EXPECT_EQ(outcome, std::string(100, '-') + std::string(100, 'x'));
    const auto waiting = spawn(again->performAndWait("y"));
    clock.settle();
    waiting.cancel();
    clock.settle();
    EXPECT_EQ(outcome, std::string(100, '-') + "y, cancelled");

    std::optional<Command> tap;
    tap = command([&, count = std::make_unique<int>(3)] {
        tap.reset();
        outcome = std::to_string(*count);
    });
    tap->perform();
    EXPECT_EQ(outcome, "3");
}

}  // namespace corvane
