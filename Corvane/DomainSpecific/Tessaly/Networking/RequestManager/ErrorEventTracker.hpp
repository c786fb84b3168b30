#pragma once

#include <cstdint>
#include <string>

#include <Corvane/Export.hpp>

namespace corvane {

/// Hears of failed downloads, for the application's statistics. Called on the thread of the download's completion,
/// before that: the main thread for the cached road, the HTTP session's queue for the plain one.
class CORVANE_EXPORT ErrorEventTracker {
  public:
    virtual ~ErrorEventTracker();
    ErrorEventTracker(const ErrorEventTracker&) = delete;
    ErrorEventTracker& operator=(const ErrorEventTracker&) = delete;

    /// `code` is the HTTP status of 400 and above, -1001 for a timeout, or 9997 for a body that is no JSON.
    virtual void trackErrorEvent(const std::string& url, std::int64_t code) = 0;

  protected:
    ErrorEventTracker() = default;
};

}  // namespace corvane
