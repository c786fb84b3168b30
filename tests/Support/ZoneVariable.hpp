#pragma once

#include <stdlib.h>
#include <time.h>

#include <optional>
#include <string>
#include <string_view>

#include <Corvane/Platform/Dates/TimeZone.hpp>

namespace corvane {

// NOLINTBEGIN(concurrency-mt-unsafe): for tests that run no other threads meanwhile

/// Sets TZ for libc and for the device's zone as long as it lives.
class ZoneVariable {
  public:
    explicit ZoneVariable(std::string_view value) {
        if (const char* const former = ::getenv("TZ")) former_ = former;
        ::setenv("TZ", std::string(value).c_str(), 1);
        apply();
    }

    ~ZoneVariable() {
        if (former_) {
            ::setenv("TZ", former_->c_str(), 1);
        } else {
            ::unsetenv("TZ");
        }
        apply();
    }

    ZoneVariable(const ZoneVariable&) = delete;
    ZoneVariable& operator=(const ZoneVariable&) = delete;

  private:
    static void apply() {
        ::tzset();
        TimeZone::resetSystemTimeZone();
    }

    std::optional<std::string> former_;
};

// NOLINTEND(concurrency-mt-unsafe)

}  // namespace corvane
