#include <Corvane/Concurrency/PageAutoRefresher.hpp>

namespace corvane {

std::shared_ptr<PageAutoRefresher> PageAutoRefresher::make(double autorefreshInterval, Options options) {
    return std::shared_ptr<PageAutoRefresher>(new PageAutoRefresher(autorefreshInterval, options));
}

PageAutoRefresher::PageAutoRefresher(double autorefreshInterval, Options options)
    : scheduler_(PeriodicalRepeatScheduler::make(autorefreshInterval)),
      autorefreshInterval_(autorefreshInterval),
      options_(options) {}

PageAutoRefresher::~PageAutoRefresher() = default;

void PageAutoRefresher::inject(const std::shared_ptr<AutoRefreshablePage>& page) {
    page_ = page;
}

double PageAutoRefresher::currentInterval() const {
    return autorefreshInterval_;
}

void PageAutoRefresher::pageDidAppear() {
    if (options_.refreshPresentedPageOnly || !scheduler_->isStarted()) start();
    const auto self = shared_from_this();
    const bool isSkipped = options_.skipRefreshOnFirstPageAppear && !wasPageOnScren_;
    if (options_.refreshOnPageAppear && !isSkipped) refresh();
    wasPageOnScren_ = true;
}

void PageAutoRefresher::pageWillDissapear() {
    if (options_.refreshPresentedPageOnly) stop();
}

void PageAutoRefresher::start() {
    scheduler_->start([weak = weak_from_this()] {
        if (const auto self = weak.lock()) self->refresh();
    });
}

void PageAutoRefresher::stop() {
    scheduler_->stop();
}

void PageAutoRefresher::restart() {
    stop();
    start();
}

void PageAutoRefresher::update(double autorefreshInterval) {
    if (autorefreshInterval == autorefreshInterval_) return;
    autorefreshInterval_ = autorefreshInterval;
    const bool wasStarted = scheduler_->isStarted();
    stop();
    scheduler_ = PeriodicalRepeatScheduler::make(autorefreshInterval);
    if (wasStarted) start();
}

void PageAutoRefresher::refresh() {
    if (const auto page = page_.lock()) page->refreshPage();
}

}  // namespace corvane
