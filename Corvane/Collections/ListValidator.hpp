#pragma once

#include <algorithm>
#include <concepts>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

namespace corvane {

/// Decides by a black list or a white list whether an entity is allowed.
///
///     const ListValidator<std::string> filter(std::nullopt, std::vector<std::string>{"Rovers"});
///     if (filter.isAllowed(fixture.home)) show(fixture);
///
/// An empty list is not an absent one: an empty black list refuses nothing, an empty white list allows nothing.
/// Immutable; copies share the lists and may be used from several threads.
template <std::equality_comparable T>
class ListValidator {
  public:
    using List = std::optional<std::vector<T>>;

    enum class Mode { blacklist, whitelist, free };

    /// Either list may be absent. A white list beside a black list is ignored.
    ListValidator(List blacklist, List whitelist)
        : lists_(std::make_shared<const Lists>(std::move(blacklist), std::move(whitelist))) {}

    // A move is a copy: no validator is without its lists.
    ListValidator(const ListValidator&) noexcept = default;
    ListValidator& operator=(const ListValidator&) noexcept = default;
    ~ListValidator() = default;

    /// The only entities that are refused.
    [[nodiscard]] const List& blacklist() const noexcept { return lists_->blacklist; }

    /// The only entities that are allowed, unless there is a black list.
    [[nodiscard]] const List& whitelist() const noexcept { return lists_->whitelist; }

    /// By which list it decides; `free` without any.
    [[nodiscard]] Mode mode() const noexcept {
        if (blacklist()) return Mode::blacklist;
        return whitelist() ? Mode::whitelist : Mode::free;
    }

    /// Whether the entity is allowed. Compares it with the elements of the list one after the other.
    [[nodiscard]] bool isAllowed(const T& entity) const {
        if (mode() == Mode::free) return true;
        const bool allowsListed = mode() == Mode::whitelist;
        const List& list = allowsListed ? whitelist() : blacklist();
        return (std::ranges::find(*list, entity) != list->end()) == allowsListed;
    }

  private:
    struct Lists {
        List blacklist;
        List whitelist;
    };

    std::shared_ptr<const Lists> lists_;
};

}  // namespace corvane
