#pragma once

#include <cstddef>
#include <initializer_list>

#include <Corvane/Export.hpp>
#include <Corvane/Platform/JSON/JSONBlockReference.hpp>

namespace corvane {

class JSONValue;

/// A list of JSON values. Include JSONValue.hpp to look at them.
///
/// Copies share their content until one of them is changed, so they are cheap; like any value, one copy
/// belongs to one thread at a time, and different copies may be used from different threads. References and
/// iterators hold until the array they came from is changed or ends.
///
///     JSONArray results{"1-0", 3, nullptr, JSONArray{1.5, true}};
///
/// Mind that braces always make a new list: `JSONArray{other}` has one element. Copy with parentheses.
class CORVANE_EXPORT JSONArray {
  public:
    using value_type = JSONValue;
    using const_iterator = const JSONValue*;
    using iterator = const_iterator;

    constexpr JSONArray() noexcept = default;
    JSONArray(std::initializer_list<JSONValue> elements);

    [[nodiscard]] std::size_t size() const noexcept;

    [[nodiscard]] bool empty() const noexcept { return size() == 0; }

    [[nodiscard]] const JSONValue* begin() const noexcept;
    [[nodiscard]] const JSONValue* end() const noexcept;

    /// The element at `index`, or a null value beyond the end.
    [[nodiscard]] const JSONValue& operator[](std::size_t index) const noexcept;

    void reserve(std::size_t count);
    void append(JSONValue value);

    /// Replaces the element at `index`; false, and nothing changed, beyond the end.
    bool set(std::size_t index, JSONValue value);

    /// Takes the element at `index` out; false beyond the end. Linear in the elements behind it.
    bool remove(std::size_t index);

    /// Whether both hold equal values in the same order.
    [[nodiscard]] bool operator==(const JSONArray& other) const;

  private:
    friend struct detail::JSONAccess;

    detail::JSONBlockReference block_;
};

}  // namespace corvane
