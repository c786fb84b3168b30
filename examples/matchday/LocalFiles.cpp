#include "LocalFiles.hpp"

#include <cstdint>
#include <map>
#include <string>
#include <utility>

#include <fmt/format.h>

#include <Corvane/Collections/FileUtil.hpp>
#include <Corvane/Collections/Predicates.hpp>
#include <Corvane/Decoding/JSONUtils.hpp>
#include <Corvane/Decoding/JWTUtils.hpp>
#include <Corvane/Decoding/KeyConversion.hpp>
#include <Corvane/Platform/JSON/JSONEncoder.hpp>

#include "Terminal.hpp"

namespace matchday {
namespace {

using corvane::FileUtil;
using corvane::JSONUtils;

constexpr const char* filterFile = "matchday-filter.json";

struct KeptFilter {
    std::optional<std::vector<std::string>> teams;
};

struct Session {
    std::string token;
};

}  // namespace

TeamNames bundledTeams() {
    TeamNames teams;
    const auto names = FileUtil::resourceDecode<std::map<std::string, std::string>>("teams.json");
    if (!names) return teams;
    const auto byId = corvane::convertKeys<std::int64_t>(*names);
    for (const auto& [id, name] : byId)
        teams[TeamID(id)] = printable(name);
    return teams;
}

std::optional<std::string> sessionText(const TeamNames& teams) {
    const auto session = FileUtil::resourceDecode<Session>("session.json");
    if (!session) return std::nullopt;
    const auto claims = corvane::JWTUtils::decodePayload(session->token).value_or(std::nullopt);
    if (!claims) return std::nullopt;
    const std::string name = JSONUtils::getStringFromJSON(*claims, "name", "");
    const auto team = teams.find(TeamID(JSONUtils::getIntFromJSON(*claims, "team", 0)));
    if (name.empty() || team == teams.end()) return std::nullopt;
    return fmt::format("Signed in as {}, who follows {}.", printable(name), team->second);
}

TeamFilter keptFilter() {
    auto kept = FileUtil::fileManagerDecode<KeptFilter>(filterFile).value_or(KeptFilter{});
    if (corvane::isNilOrEmpty(kept.teams)) kept.teams.reset();
    return {std::nullopt, std::move(kept.teams)};
}

std::expected<void, std::string> keepFilter(std::vector<std::string> teams) {
    const auto data = corvane::JSONEncoder().encode(KeptFilter{.teams = std::move(teams)});
    if (!data) return std::unexpected("the names of teams have to be UTF-8");
    if (const auto written = FileUtil::write(*data, filterFile); !written) {
        return std::unexpected("cannot keep the filter: " + written.error().localizedDescription());
    }
    return {};
}

}  // namespace matchday
