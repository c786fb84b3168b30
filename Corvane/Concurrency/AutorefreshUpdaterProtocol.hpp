#pragma once

#include <memory>

#include <Corvane/Concurrency/AutoRefreshablePage.hpp>
#include <Corvane/Export.hpp>

namespace corvane {

/// Keeps one page fresh. Told by the page's owner when the page comes and goes; one thread, the main thread in
/// practice.
class CORVANE_EXPORT AutorefreshUpdaterProtocol {
  public:
    AutorefreshUpdaterProtocol() = default;
    virtual ~AutorefreshUpdaterProtocol() = default;
    AutorefreshUpdaterProtocol(const AutorefreshUpdaterProtocol&) = delete;
    AutorefreshUpdaterProtocol& operator=(const AutorefreshUpdaterProtocol&) = delete;

    /// The page to refresh from now on; held weakly.
    virtual void inject(const std::shared_ptr<AutoRefreshablePage>& page) = 0;

    /// Seconds between two refreshes.
    [[nodiscard]] virtual double currentInterval() const = 0;

    virtual void pageDidAppear() = 0;

    /// The spelling is deliberate.
    virtual void pageWillDissapear() = 0;

    virtual void start() = 0;
    virtual void stop() = 0;
    virtual void restart() = 0;

    /// Changes the interval, in seconds; what runs starts over with it.
    virtual void update(double autorefreshInterval) = 0;
};

}  // namespace corvane
