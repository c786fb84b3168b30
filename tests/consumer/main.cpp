#include <iostream>
#include <memory>
#include <optional>

#include <Corvane/Corvane.hpp>
#include <Corvane/Testing/LoopbackServer.hpp>
#include <Corvane/Testing/VirtualClock.hpp>

using namespace corvane;

namespace {

/// What the server has under "/fixtures", read as JSON; null when anything fails.
JSONValue downloadFixtures() {
    testing::LoopbackServer server;
    server.route("GET", "/fixtures", testing::LoopbackResponse::json(R"([{"home": "Rovers", "goals": [2, 1]}])"));

    JSONValue fixtures;
    const auto task = URLSession::shared()->dataTask(
        URLRequest(*URL::parse(server.url("/fixtures"))),
        [&](const std::optional<Data>& data, const std::shared_ptr<const HTTPURLResponse>&,
            const std::optional<PlatformError>& error) {
            if (error) std::cerr << error->localizedDescription() << '\n';
            if (data) fixtures = JSONSerialization::jsonObject(*data).value_or(JSONValue());
            RunLoop::main().stop();
        });
    task->resume();
    RunLoop::main().run();
    return fixtures;
}

bool timerFiresOnVirtualTime() {
    testing::VirtualClock clock;
    bool fired = false;
    const auto timer = Timer::scheduled(3600, false, [&](Timer&) { fired = true; });
    clock.advance(3600);
    return fired;
}

}  // namespace

int main() {
    const JSONValue fixtures = downloadFixtures();
    const bool downloaded = fixtures[0]["goals"][1] == JSONValue(1);
    const bool fired = timerFiresOnVirtualTime();
    std::cout << "downloaded: " << downloaded << ", fired: " << fired << '\n';
    return downloaded && fired ? 0 : 1;
}
