#pragma once

#include <functional>
#include <map>
#include <string>
#include <string_view>

#include <Corvane/Testing/VirtualClock.hpp>

namespace corvane {

/// Plays scripts on a virtual clock. '.' is written to the outcome and lets a time pass; any other character is a step.
/// What the steps cause is for them to write.
struct Timeline {
    using Steps = std::map<char, std::function<void()>>;

    const std::string& play(std::string_view script, double tick, const Steps& steps) {
        for (const char step : script) {
            if (step != '.') {
                steps.at(step)();
            } else {
                outcome += step;
                clock.advance(tick);
            }
        }
        return outcome;
    }

    testing::VirtualClock clock;
    std::string outcome;
};

}  // namespace corvane
