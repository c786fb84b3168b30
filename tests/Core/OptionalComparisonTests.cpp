#include <algorithm>
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
    const std::optional<std::string> name = "b", other = "a", nobody;
    // Argument-dependent lookup finds std::min here, which would give the absent value.
    EXPECT_EQ(min(name, nobody), "b");
    EXPECT_EQ(max(name, other), "b");
}

}  // namespace corvane
