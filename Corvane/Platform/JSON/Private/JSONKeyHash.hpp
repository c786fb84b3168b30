#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace corvane::detail {

/// A hash of a key under a seed that every process draws anew: a back end that answers with chosen keys must
/// not be able to make them all collide. Never the same in two processes, so nothing may store it.
[[nodiscard]] std::size_t jsonKeyHash(std::string_view key) noexcept;

}  // namespace corvane::detail
