#pragma once

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include <Corvane/Platform/Application/BackgroundTaskHost.hpp>

namespace corvane {

/// Counts beginnings and ends, and can refuse or run out of patience.
class CountingBackgroundTaskHost final : public BackgroundTaskHost {
  public:
    Identifier begin(std::string name, std::function<void()> expirationHandler) override {
        begun.push_back(std::move(name));
        expire = std::move(expirationHandler);
        if (isImpatient) expire();
        return isRefusing ? invalid : 40 + begun.size();
    }

    bool end(Identifier identifier) override {
        ended.push_back(identifier);
        return !isRefusing;
    }

    bool isRefusing = false;
    bool isImpatient = false;
    std::vector<std::string> begun;
    std::vector<Identifier> ended;
    std::function<void()> expire;
};

}  // namespace corvane
