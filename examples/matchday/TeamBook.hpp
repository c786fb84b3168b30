#pragma once

#include <expected>
#include <set>
#include <string>
#include <vector>

#include "LocalFiles.hpp"
#include "Models.hpp"
#include "Table.hpp"

namespace matchday {

/// "2 – 1"
[[nodiscard]] std::string text(const Score& score);

/// The teams by name, those that the user wants to see, and the tables that show them.
class TeamBook {
  public:
    [[nodiscard]] const TeamNames& names() const noexcept { return names_; }

    /// The team's name, "?" for a stranger.
    [[nodiscard]] const std::string& name(const TeamID& team) const;

    [[nodiscard]] bool isShown(const TeamID& team) const { return filter_.isAllowed(name(team)); }

    [[nodiscard]] bool isShown(const Fixture& fixture) const { return isShown(fixture.home) || isShown(fixture.away); }

    /// Shows the teams whose names contain one of the texts, in whatever case, now and next time; all teams for none.
    /// A failure is the sentence to tell the user: a text that names no team changes nothing, a choice that cannot be
    /// kept is good for this time.
    std::expected<void, std::string> showOnly(const std::vector<std::string>& texts);

    /// The shown games of a matchday, those marked that have changed.
    [[nodiscard]] Table fixturesTable(const Matchday& matchday, const std::set<FixtureID>& changed) const;

    /// The shown teams of the league's table.
    [[nodiscard]] Table standingsTable(const Standings& standings) const;

  private:
    TeamNames names_ = bundledTeams();
    TeamFilter filter_ = keptFilter();
};

}  // namespace matchday
