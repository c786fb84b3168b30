#include <memory>

#include <gtest/gtest.h>

#include <Corvane/Concurrency/PageAutoRefresher.hpp>
#include <Corvane/Testing/VirtualClock.hpp>

namespace corvane {

namespace {

class Page final : public AutoRefreshablePage {
  public:
    explicit Page(PageAutoRefresher::Options options, double interval = 10)
        : refresher(PageAutoRefresher::make(interval, options)) {}

    void refreshPage() override {
        ++refreshes;
        if (dropsRefresher) refresher.reset();
    }

    std::shared_ptr<PageAutoRefresher> refresher;
    bool dropsRefresher = false;
    int refreshes = 0;
};

std::shared_ptr<Page> makePage(PageAutoRefresher::Options options) {
    auto page = std::make_shared<Page>(options);
    page->refresher->inject(page);
    return page;
}

}  // namespace

TEST(PageAutoRefresher, RefreshesAsItsOptionsSay) {
    const struct {
        PageAutoRefresher::Options options;
        int firstAppearance, tenSecondsLater, whileGone, secondAppearance, fiveSecondsLater;
    } cases[] = {
        {{.refreshPresentedPageOnly = false}, 0, 1, 2, 2, 3},
        {{.refreshPresentedPageOnly = true}, 0, 1, 1, 1, 1},
        {{.refreshPresentedPageOnly = true, .refreshOnPageAppear = true}, 1, 2, 2, 3, 3},
        {{.refreshPresentedPageOnly = true, .refreshOnPageAppear = true, .skipRefreshOnFirstPageAppear = true},
         0,
         1,
         1,
         2,
         2},
        {{.refreshOnPageAppear = true, .skipRefreshOnFirstPageAppear = true}, 0, 1, 2, 3, 4},
    };

    testing::VirtualClock clock;
    for (const auto& row : cases) {
        SCOPED_TRACE(&row - cases);
        const auto page = makePage(row.options);
        EXPECT_FALSE(page->refresher->wasPageOnScren());
        page->refresher->pageDidAppear();
        EXPECT_TRUE(page->refresher->wasPageOnScren());
        EXPECT_EQ(page->refreshes, row.firstAppearance);
        clock.advance(10);
        EXPECT_EQ(page->refreshes, row.tenSecondsLater);
        page->refresher->pageWillDissapear();
        clock.advance(15);
        EXPECT_EQ(page->refreshes, row.whileGone);
        page->refresher->pageDidAppear();
        EXPECT_EQ(page->refreshes, row.secondAppearance);
        clock.advance(5);
        EXPECT_EQ(page->refreshes, row.fiveSecondsLater);
    }
}

TEST(PageAutoRefresher, ChangesTheIntervalOfWhatRuns) {
    testing::VirtualClock clock;
    const auto page = makePage({});
    auto& refresher = *page->refresher;
    refresher.update(3);
    EXPECT_EQ(refresher.currentInterval(), 3);
    clock.advance(20);
    EXPECT_EQ(page->refreshes, 0) << "changing the interval does not start it";

    refresher.start();
    clock.advance(2);
    refresher.update(3);
    clock.advance(1);
    EXPECT_EQ(page->refreshes, 1) << "the same interval leaves the timer alone";
    refresher.update(5);
    clock.advance(4);
    EXPECT_EQ(page->refreshes, 1);
    refresher.restart();
    clock.advance(4);
    EXPECT_EQ(page->refreshes, 1);
    clock.advance(1);
    EXPECT_EQ(page->refreshes, 2);
    refresher.stop();
    clock.advance(20);
    EXPECT_EQ(page->refreshes, 2);
}

TEST(PageAutoRefresher, OutlivesItsPageAndNotItsOwner) {
    testing::VirtualClock clock;
    auto page = makePage({.refreshOnPageAppear = true});
    const auto refresher = page->refresher;
    refresher->pageDidAppear();
    page.reset();
    clock.advance(30);
    refresher->pageDidAppear();

    page = makePage({.refreshOnPageAppear = true});
    const std::weak_ptr weak = page->refresher;
    page->dropsRefresher = true;
    page->refresher->pageDidAppear();
    EXPECT_TRUE(weak.expired());
    clock.advance(30);
    EXPECT_EQ(page->refreshes, 1);
}

}  // namespace corvane
