#pragma once

#include <concepts>
#include <string>

namespace corvane {

/// What can be cached: `cacheID()` is the key that it is cached under.
template <class T>
concept CacheIdentifiable = requires(const T& item) {
    { item.cacheID() } -> std::convertible_to<std::string>;
};

}  // namespace corvane
