#include <memory>
#include <string>

#include <gtest/gtest.h>

#include <Corvane/Concurrency/PageAutoRefresher.hpp>
#include <Corvane/Testing/VirtualClock.hpp>

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
/// set the interval, 'd' has the next refresh drop the refresher, '.' lets a second pass. '*' comes for each refresh.
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
        testing::VirtualClock clock;
        std::string outcome;
        auto page = std::make_shared<Page>(outcome, options);
        const std::weak_ptr refresher = page->refresher;
        page->refresher->inject(page);
        const auto keptAfterPage = std::string(script).find('x') == std::string::npos ? nullptr : page->refresher;
        EXPECT_FALSE(page->refresher->wasPageOnScren());
        for (const char* step = script; *step != '\0'; ++step) {
            if (*step == '.') {
                outcome += '.';
                clock.advance(1);
            } else if (*step == 'x') {
                page.reset();
            } else if (*step == 'd') {
                page->dropsRefresher = true;
            } else if (*step == 'A') {
                page->refresher->pageDidAppear();
            } else if (*step == 'D') {
                EXPECT_TRUE(page->refresher->wasPageOnScren());
                page->refresher->pageWillDissapear();
            } else if (*step == 's') {
                page->refresher->start();
            } else if (*step == 'o') {
                page->refresher->stop();
            } else if (*step == 'r') {
                page->refresher->restart();
            } else {
                page->refresher->update(*step - '0');
                EXPECT_EQ(page->refresher->currentInterval(), *step - '0');
            }
        }
        EXPECT_EQ(outcome, expected) << script;
        EXPECT_EQ(refresher.expired(), page != nullptr && page->dropsRefresher) << script;
    }
}

}  // namespace corvane
