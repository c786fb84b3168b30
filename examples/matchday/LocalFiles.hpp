#pragma once

#include <expected>
#include <optional>
#include <string>
#include <vector>

#include <Corvane/Collections/ListValidator.hpp>

#include "Models.hpp"

namespace matchday {

/// Decides by a club's name whether its games are shown.
using TeamFilter = corvane::ListValidator<std::string>;

/// The clubs' names that the program is shipped with; none when they cannot be read.
[[nodiscard]] TeamNames bundledTeams();

/// What the sample session token says: "Signed in as NAME, who follows TEAM."; absent when it says nothing.
[[nodiscard]] std::optional<std::string> sessionText(const TeamNames& teams);

/// The filter that was kept; without one everything is shown.
[[nodiscard]] TeamFilter keptFilter();

/// Keeps a filter that shows these teams alone, or all when there are none. A failure is the sentence to tell the user.
[[nodiscard]] std::expected<void, std::string> keepFilter(std::vector<std::string> teams);

}  // namespace matchday
