#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include <Corvane/Core/Atomic.hpp>
#include <Corvane/DomainSpecific/Tessaly/Networking/RequestManager/ErrorEventTracker.hpp>

namespace matchday {

/// Remembers the failed downloads of a run; an application would send them to its statistics. Any thread.
class FailureLog final : public corvane::ErrorEventTracker {
  public:
    struct Failure {
        std::string url;
        std::int64_t code;
    };

    void trackErrorEvent(const std::string& url, std::int64_t code) override {
        failures_.mutate([&](std::vector<Failure>& failures) { failures.push_back({url, code}); });
    }

    [[nodiscard]] std::vector<Failure> failures() const { return failures_.wrappedValue(); }

  private:
    corvane::Atomic<std::vector<Failure>> failures_{{}};
};

}  // namespace matchday
