#include <string>

#include <gtest/gtest.h>

#include <Corvane/Concurrency/PageAutoRefresher.hpp>

#include "tests/Support/Timeline.hpp"

namespace corvane {

namespace {

struct Page final : AutoRefreshablePage {
    void refreshPage() override {
        outcome += '*';
        if (dropsRefresher) refresher.reset();
    }

    std::string& outcome;
    std::shared_ptr<PageAutoRefresher> refresher;
    bool dropsRefresher = false;

    Page(std::string& itsOutcome, PageAutoRefresher::Options options)
        : outcome(itsOutcome), refresher(PageAutoRefresher::make(2, options)) {}
};

}  // namespace

/// In a script the page appears 'A' and disappears 'D' and ends 'x'; 's', 'o', 'r' start, stop and restart; '2' and '3'
/// set the interval, and 'd' has the next refresh drop the refresher. '*' comes of each refresh.
TEST(PageAutoRefresher, RefreshesAsItsOptionsSay) {
    constexpr PageAutoRefresher::Options always{}, presented{.refreshPresentedPageOnly = true},
        eachTime{.refreshPresentedPageOnly = true, .refreshOnPageAppear = true},
        notFirst{.refreshOnPageAppear = true, .skipRefreshOnFirstPageAppear = true};

    const struct {
        PageAutoRefresher::Options options;
        const char* script;
        const char* outcome;
    } rows[] = {
        {always, "..A...D.A..", "....*..*..*"},
        {presented, "A...D...A...", "..*......*."},
        {eachTime, "A...D...A.A..", "*..*....*.*..*"},
        {notFirst, "A.D.A.A..", "..**.*.*."},
        {always, "3...s..2..3....", ".......*...*."},
        {always, "s.r..o...", "...*..."},
        {always, "s2.2..", "..*."},
        {always, "s...x...", "..*...."},
        {eachTime, "dA....", "*...."},
        {always, "sd......", "..*...."},
    };

    for (const auto& [options, script, expected] : rows) {
        Timeline timeline;
        auto page = std::make_shared<Page>(timeline.outcome, options);
        page->refresher->inject(page);
        const std::weak_ptr weak = page->refresher;
        std::shared_ptr<PageAutoRefresher> kept;
        timeline.play(script, 1,
                      {{'A', [&] { page->refresher->pageDidAppear(); }},
                       {'D', [&] { page->refresher->pageWillDissapear(); }},
                       {'s', [&] { page->refresher->start(); }},
                       {'o', [&] { page->refresher->stop(); }},
                       {'r', [&] { page->refresher->restart(); }},
                       {'2', [&] { page->refresher->update(2); }},
                       {'3', [&] { page->refresher->update(3); }},
                       {'d', [&] { page->dropsRefresher = true; }},
                       {'x', [&] {
                            kept = page->refresher;
                            page.reset();
                        }}});
        EXPECT_EQ(timeline.outcome, expected) << script;
        EXPECT_EQ(weak.expired(), page != nullptr && page->dropsRefresher) << script;
    }
}

}  // namespace corvane
