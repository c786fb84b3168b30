#include <gtest/gtest.h>

#include <Corvane/Collections/OrderedIdentifiableItemSet.hpp>

namespace corvane {
namespace {

struct Team {
    int number;
    std::string name;

    [[nodiscard]] int id() const noexcept { return number; }

    bool operator==(const Team&) const = default;
};

using Teams = OrderedIdentifiableItemSet<Team>;
using Identifiers = std::vector<int>;

TEST(OrderedIdentifiableItemSet, InsertsWhereItIsToldAndAtMostAtTheEnd) {
    Teams teams;
    EXPECT_TRUE(teams.append({1, "one"}));
    EXPECT_TRUE(teams.insert({2, "two"}, 10));
    EXPECT_TRUE(teams.insert({3, "three"}, 0));
    EXPECT_TRUE(teams.insert({4, "four"}, teams.count()));
    EXPECT_TRUE(teams.insert({5, "five"}, 1));
    EXPECT_EQ(teams.orderedIdentifiers(), (Identifiers{3, 5, 1, 2, 4}));
    EXPECT_EQ(teams.itemAt(1)->name, "five");
    EXPECT_EQ(teams.itemAt(-1), nullptr);
    EXPECT_EQ(teams.itemAt(teams.count()), nullptr);

    Teams copy;
    copy.replaceExistingItems({{3, "three"}, {5, "five"}, {1, "one"}, {2, "two"}, {4, "four"}});
    const auto taken = Teams::SetError::existingItemInsertionAttempt();
    EXPECT_EQ(teams.append({1, "again"}).error(), taken);
    EXPECT_EQ(teams.insert({5, "again"}, -1).error(), taken);
    EXPECT_EQ(teams, copy);
    EXPECT_DEATH((void)teams.insert({6, "six"}, -1), "Fatal error: .*negative index");

    teams.removeItemFor(teams.orderedIdentifiers()[0]);
    teams.removeItemAt(1);
    teams.removeItemAt(-1);
    teams.removeItemAt(3);
    EXPECT_EQ(teams.orderedIdentifiers(), (Identifiers{5, 2, 4}));
    EXPECT_EQ(teams.itemFor(1), nullptr);
    EXPECT_EQ(copy.count(), 5);
    teams.removeAll();
    EXPECT_TRUE(teams.isEmpty() && teams.count() == 0);
}

TEST(OrderedIdentifiableItemSet, KeepsTheListAndTheItemsApartWhereIdentifiersRepeat) {
    Teams teams;
    teams.replaceExistingItems({{7, "x1"}, {8, "y"}, {7, "x2"}});
    EXPECT_EQ(teams.orderedIdentifiers(), (Identifiers{7, 8, 7}));
    EXPECT_EQ(teams.itemAt(2)->name, "x1");

    teams.removeItemFor(7);
    EXPECT_EQ(teams.orderedIdentifiers(), (Identifiers{8, 7}));
    EXPECT_EQ(teams.itemAt(1), nullptr);
    // No item is in the way of a new one, which is then listed twice.
    EXPECT_TRUE(teams.append({7, "x3"}));
    EXPECT_EQ(teams.itemAt(1)->name, "x3");

    teams.removeItemAt(1);
    EXPECT_EQ(teams.orderedIdentifiers(), (Identifiers{8, 7}));
    teams.removeItemFor(8);
    EXPECT_TRUE(teams.isEmpty());
    EXPECT_EQ(teams.count(), 1);
}

}  // namespace
}  // namespace corvane
