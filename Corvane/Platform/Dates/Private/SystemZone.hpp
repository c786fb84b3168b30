#pragma once

#include <optional>

#include <Corvane/Platform/Dates/TimeZone.hpp>

namespace corvane::systemZone {

/// The zone in force on this machine, looked up at most once a second.
[[nodiscard]] const TimeZone& get();

/// Looks it up now.
void reset();

/// What the application has put in its place, or null.
[[nodiscard]] const TimeZone* replacement() noexcept;

void replace(std::optional<TimeZone> zone);

}  // namespace corvane::systemZone
