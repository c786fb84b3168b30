#pragma once

#include <functional>
#include <memory>

#include <Corvane/Concurrency/AutorefreshUpdaterProtocol.hpp>
#include <Corvane/Concurrency/PeriodicalRepeatScheduler.hpp>
#include <Corvane/Export.hpp>

namespace corvane {

/// Refreshes a page once an interval, and when it appears if that is asked for.
///
///     const auto refresher = PageAutoRefresher::make(30.0, {.refreshPresentedPageOnly = true});
///     refresher->inject(page);
///     refresher->pageDidAppear();
///
/// The page is held weakly: one that has gone is not refreshed, and the timer runs on until `stop` or the refresher's
/// end. A refresh may do anything with the refresher, dropping it included. All operations are for one thread, whose
/// run loop carries the timer: the main thread in practice.
class CORVANE_EXPORT PageAutoRefresher final : public AutorefreshUpdaterProtocol,
                                               public std::enable_shared_from_this<PageAutoRefresher> {
  public:
    struct Options {
        /// Run the timer only while the page is on screen, from anew with every appearance. Without it the first
        /// appearance starts the timer, and it goes on when the page disappears.
        bool refreshPresentedPageOnly = false;
        bool refreshOnPageAppear = false;
        /// Leave out the refresh of the first appearance.
        bool skipRefreshOnFirstPageAppear = false;
    };

    /// `autorefreshInterval` is in seconds, with the extremes of `PeriodicalRepeatScheduler`.
    [[nodiscard]] static std::shared_ptr<PageAutoRefresher> make(double autorefreshInterval, Options options);

    ~PageAutoRefresher() override;

    /// Whether the page has appeared at least once. The spelling is deliberate.
    [[nodiscard]] bool wasPageOnScren() const noexcept { return wasPageOnScren_; }

    /// The scheduler there is now; a change of the interval replaces it.
    [[nodiscard]] const PeriodicalRepeatScheduler& autorefreshScheduler() const noexcept { return *scheduler_; }

    void inject(const std::shared_ptr<AutoRefreshablePage>& page) override;
    [[nodiscard]] double currentInterval() const override;
    void pageDidAppear() override;
    void pageWillDissapear() override;
    void start() override;
    void stop() override;
    void restart() override;
    void update(double autorefreshInterval) override;

  private:
    PageAutoRefresher(double autorefreshInterval, Options options);

    void refresh();

    std::shared_ptr<PeriodicalRepeatScheduler> scheduler_;
    double autorefreshInterval_;
    const Options options_;
    bool wasPageOnScren_ = false;
    std::weak_ptr<AutoRefreshablePage> page_;
};

}  // namespace corvane
