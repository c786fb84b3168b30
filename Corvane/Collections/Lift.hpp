#pragma once

#include <concepts>
#include <memory>
#include <ranges>
#include <utility>

namespace corvane {

/// The element of `list` at `index`; null when the index is negative or not below the list's length. It lives as long
/// as it stays where it is in the list.
///
///     if (const Fixture* next = lift(fixtures, selected + 1)) show(*next);
template <std::ranges::random_access_range List>
    requires std::ranges::sized_range<List>
[[nodiscard]] constexpr auto lift(List& list, std::integral auto index) noexcept {
    const bool exists = std::cmp_greater_equal(index, 0) && std::cmp_less(index, std::ranges::size(list));
    return exists ? std::addressof(std::ranges::begin(list)[static_cast<std::ranges::range_difference_t<List>>(index)])
                  : nullptr;
}

}  // namespace corvane
