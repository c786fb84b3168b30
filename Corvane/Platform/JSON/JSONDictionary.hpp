#pragma once

#include <cstddef>
#include <initializer_list>
#include <iterator>
#include <string_view>
#include <utility>

#include <Corvane/Export.hpp>
#include <Corvane/Platform/JSON/JSONBlockReference.hpp>

namespace corvane {

class JSONValue;

/// JSON values under text keys, in the order of the payload or of their insertion. Include JSONValue.hpp to
/// look at them.
///
/// Every key occurs once. Looking a key up compares keys while there are few of them and hashes beyond that.
/// Copies share their content until one of them is changed, so they are cheap; like any value, one copy
/// belongs to one thread at a time, and different copies may be used from different threads. References, keys
/// and iterators hold until the dictionary they came from is changed or ends.
///
///     JSONDictionary payload{{"team", 12}, {"names", JSONArray{"Rovers", "ROV"}}};
///     for (const auto& [key, value] : payload) print(key, value);
class CORVANE_EXPORT JSONDictionary {
  public:
    struct Member {
        std::string_view key;
        const JSONValue& value;
    };

    class CORVANE_EXPORT Iterator {
      public:
        using value_type = Member;
        using difference_type = std::ptrdiff_t;
        using iterator_concept = std::forward_iterator_tag;

        Iterator() noexcept = default;

        [[nodiscard]] Member operator*() const noexcept;
        Iterator& operator++() noexcept;
        Iterator operator++(int) noexcept;

        bool operator==(const Iterator&) const noexcept = default;

      private:
        friend class JSONDictionary;

        explicit Iterator(const void* member) noexcept : member_(member) {}

        const void* member_ = nullptr;
    };

    using const_iterator = Iterator;
    using iterator = Iterator;

    constexpr JSONDictionary() noexcept = default;

    /// A later value under the same key replaces the earlier one.
    JSONDictionary(std::initializer_list<std::pair<std::string_view, JSONValue>> members);

    [[nodiscard]] std::size_t size() const noexcept;

    [[nodiscard]] bool empty() const noexcept { return size() == 0; }

    [[nodiscard]] Iterator begin() const noexcept;
    [[nodiscard]] Iterator end() const noexcept;

    /// The value under `key`, null (the pointer) when there is none.
    [[nodiscard]] const JSONValue* find(std::string_view key) const noexcept;

    [[nodiscard]] bool contains(std::string_view key) const noexcept { return find(key) != nullptr; }

    /// The value under `key`, or a null value when there is none, so that look-ups can be chained.
    [[nodiscard]] const JSONValue& operator[](std::string_view key) const noexcept;

    /// Replaces the value under `key` in its place, or appends the key.
    void set(std::string_view key, JSONValue value);

    /// Takes `key` and its value out; false when there is none. Linear in the number of members.
    bool remove(std::string_view key);

    /// Whether both hold the same keys with equal values; the order does not count.
    [[nodiscard]] bool operator==(const JSONDictionary& other) const;

  private:
    friend struct detail::JSONAccess;

    detail::JSONBlockReference block_;
};

}  // namespace corvane
