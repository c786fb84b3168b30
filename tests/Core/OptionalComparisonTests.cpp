#include <algorithm>
#include <optional>
#include <string>

#include <gtest/gtest.h>

#include <Corvane/Core/OptionalComparison.hpp>

namespace elsewhere {

// Neither namespace is the caller's own: the calls below find both sets of templates, by directive and by argument.
using namespace std;
using namespace corvane;

constexpr optional<int> absent;

static_assert(min(absent, optional(3)) == 3 && min(optional(3), absent) == 3);
static_assert(max(absent, optional(3)) == 3 && max(optional(3), absent) == 3);
static_assert(!min(absent, absent) && !max(absent, absent));
static_assert(min(optional(2), optional(5)) == 2 && max(optional(2), optional(5)) == 5);
static_assert(min(optional(5), optional(2)) == 2 && max(optional(5), optional(2)) == 5);
static_assert(min(4, 7) == 4, "the standard ones keep everything else");

}  // namespace elsewhere

namespace corvane {

TEST(OptionalComparison, IsChosenOverTheStandardFunctions) {
    std::optional<std::string> name = "b";
    const std::optional<std::string> nobody;
    // Argument-dependent lookup finds std::min here, which would give the absent value.
    EXPECT_EQ(min(name, nobody), "b");
    {
        using corvane::max;
        using corvane::min;
        using std::max;
        using std::min;
        EXPECT_EQ(min(nobody, name), "b");
        EXPECT_EQ(max(name, std::optional<std::string>("a")), "b");
    }
}

}  // namespace corvane
