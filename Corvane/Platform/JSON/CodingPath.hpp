#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <Corvane/Export.hpp>

namespace corvane {

/// One step from a value to a value inside it: a member's key or an element's index.
class CORVANE_EXPORT CodingKey {
  public:
    explicit CodingKey(std::string key) : text_(std::move(key)) {}

    explicit CodingKey(std::size_t index) : text_(std::to_string(index)), index_(index) {}

    /// The key, or the index in decimal.
    [[nodiscard]] const std::string& stringValue() const noexcept { return text_; }

    /// The index; absent for a member's key.
    [[nodiscard]] std::optional<std::size_t> index() const noexcept { return index_; }

    [[nodiscard]] bool operator==(const CodingKey&) const = default;

  private:
    std::string text_;
    std::optional<std::size_t> index_;
};

/// The way from a document's top-level value to one inside it; empty for the top-level value itself.
using CodingPath = std::vector<CodingKey>;

/// The path for developers, as in "matches[3].home.name", "the top level" when it is empty. Keys that are not plain
/// identifiers stand in brackets and quotes, and long ones are cut.
[[nodiscard]] CORVANE_EXPORT std::string description(const CodingPath& path);

namespace detail {

/// A step of the path to the value that is being coded, on the stack of who codes the value around it.
struct CodingStep {
    const CodingStep* parent = nullptr;
    std::string_view key;
    std::size_t index = 0;
    bool isIndex = false;

    static CodingStep to(const CodingStep* parent, std::string_view key) noexcept { return {parent, key}; }

    static CodingStep to(const CodingStep* parent, std::size_t index) noexcept { return {parent, {}, index, true}; }
};

[[nodiscard]] CORVANE_EXPORT CodingPath pathOf(const CodingStep* last);

}  // namespace detail

}  // namespace corvane
