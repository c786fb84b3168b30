#include <optional>
#include <string>

#include <Corvane/Collections/Predicates.hpp>

namespace corvane {

static_assert(isNilOrZero(std::optional<int>()) && isNilOrZero(std::optional(0)) && !isNilOrZero(std::optional(-1)));
static_assert(isNilOrZero(std::optional(-0.0)) && !isNilOrZero(std::optional(0.5)));
static_assert(isNilOrEmpty(std::optional<std::string>()) && isNilOrEmpty(std::optional(std::string())) &&
              !isNilOrEmpty(std::optional(std::string(" "))));

}  // namespace corvane
