#include "benchmarks/JSON/Fixtures.hpp"

#include <map>
#include <random>
#include <string>

#include <fmt/format.h>

namespace {

using corvane::Data;

std::string fixtures(std::size_t size) {
    static constexpr const char* teams[] = {"Rovers", "Borussia Mönchsberg", "Olympique \\\"Nord\\\"", "Atlético"};
    std::mt19937_64 random(20240315);
    const auto draw = [&random](std::uint64_t limit) { return random() % limit; };
    const auto odds = [&draw] { return 1 + static_cast<double>(draw(900)) / 100; };
    std::string text = R"({"competition":{"id":8,"name":"First League","season":"2023/2024"},"matches":[)";
    for (std::size_t i = 0; text.size() < size; ++i) {
        const std::uint64_t home = draw(4);
        const std::uint64_t away = draw(4);
        text +=
            fmt::format(R"({}{{"id":{},"round":{},"status":"FINISHED","finished":true,)"
                        R"("home":{{"id":{},"name":"{}","logo":"https:\/\/img.example\/{}.png"}},)"
                        R"("away":{{"id":{},"name":"{}","logo":"https:\/\/img.example\/{}.png"}},)"
                        R"("score":{{"home":{},"away":{},"halfTime":[{},{}]}},"venue":"Stadium No. {}, North Stand",)"
                        R"("odds":[{:.2f},{:.2f},{:.2f}],"tv":null,"updated":"2024-03-15T12:{:02}:00Z"}})",
                        i == 0 ? "" : ",", 4'000'000'000 + i, 1 + i / 10, home, teams[home], home, away, teams[away],
                        away, draw(6), draw(6), draw(3), draw(3), draw(400), odds(), odds(), odds(), draw(60));
    }
    return text + "]}";
}

}  // namespace

const Data& document(std::int64_t size) {
    static std::map<std::int64_t, Data> documents;
    const auto [entry, isNew] = documents.try_emplace(size);
    if (isNew) entry->second = Data(fixtures(static_cast<std::size_t>(size)));
    return entry->second;
}
