#pragma once

#include <algorithm>
#include <concepts>
#include <cstddef>
#include <expected>
#include <iterator>
#include <string>
#include <utility>
#include <vector>

#include <Corvane/Collections/Identifiable.hpp>
#include <Corvane/Collections/Lift.hpp>
#include <Corvane/Platform/Collections/OrderedDictionary.hpp>
#include <Corvane/Platform/FatalError.hpp>

namespace corvane {

/// Items in a chosen order, found by identifier or by position.
///
///     OrderedIdentifiableItemSet<Team> favourites;
///     if (!favourites.insert(team, 0)) showThatItIsOneAlready(team);
///     const Team* rovers = favourites.itemFor(12);
///
/// The list of identifiers and the items behind them are kept side by side, and some operations let them differ on
/// purpose: an identifier may stand in the list several times, or without an item. A value: copies are independent. One
/// thread at a time. Items must be movable without throwing; those that are returned live until the set is changed or
/// ends.
///
/// Looking up takes constant time, and so does appending; what inserts or removes elsewhere takes time in proportion to
/// the number of items.
template <Identifiable Item>
class OrderedIdentifiableItemSet {
  public:
    using ID = IdentifierOf<Item>;

    /// Why an item was not taken.
    class SetError {
      public:
        /// There is an item with this identifier already.
        [[nodiscard]] static constexpr SetError existingItemInsertionAttempt() noexcept { return SetError(); }

        [[nodiscard]] static constexpr bool isExistingItemInsertionAttempt() noexcept { return true; }

        [[nodiscard]] static std::string description() { return "existingItemInsertionAttempt"; }

        [[nodiscard]] constexpr bool operator==(const SetError&) const noexcept = default;

      private:
        constexpr SetError() noexcept = default;
    };

    [[nodiscard]] const std::vector<ID>& orderedIdentifiers() const noexcept { return orderedIdentifiers_; }

    /// Whether there are no items, whatever identifiers are listed.
    [[nodiscard]] bool isEmpty() const noexcept { return items_.empty(); }

    /// How many identifiers are listed, with or without an item.
    [[nodiscard]] std::size_t count() const noexcept { return orderedIdentifiers_.size(); }

    /// The item with the identifier, listed or not; null without one.
    [[nodiscard]] const Item* itemFor(const ID& id) const { return items_.find(id); }

    /// The item whose identifier is listed at `index`; null for an index outside the list, or without an item.
    [[nodiscard]] const Item* itemAt(std::integral auto index) const {
        const ID* id = lift(orderedIdentifiers_, index);
        return id != nullptr ? itemFor(*id) : nullptr;
    }

    /// Lists the item's identifier at `index`, or at the end when that is beyond it. A negative index is a programming
    /// error that stops the process. With an error, which an item of the same identifier gives, nothing has changed.
    [[nodiscard]] std::expected<void, SetError> insert(Item item, std::integral auto index) {
        return add(std::move(item), [this, index] {
            if (std::cmp_less(index, 0)) fatalError("An item cannot be inserted at a negative index");
            const bool isListed = std::cmp_less(index, count());
            return isListed ? std::next(orderedIdentifiers_.begin(), static_cast<std::ptrdiff_t>(index))
                            : orderedIdentifiers_.end();
        });
    }

    /// Lists the item's identifier at the end; fails as `insert` does.
    [[nodiscard]] std::expected<void, SetError> append(Item item) {
        return add(std::move(item), [this] { return orderedIdentifiers_.end(); });
    }

    /// Makes `newItems` the whole content. Of items with the same identifier the first is kept; the identifier is
    /// deliberately listed once for each of them.
    void replaceExistingItems(std::vector<Item> newItems) {
        std::vector<ID> identifiers;
        OrderedDictionary<ID, Item> items;
        identifiers.reserve(newItems.size());
        items.reserve(newItems.size());
        for (Item& item : newItems) {
            identifiers.push_back(detail::identifier(item));
            items.tryEmplace(identifiers.back(), std::move(item));
        }
        orderedIdentifiers_ = std::move(identifiers);
        items_ = std::move(items);
    }

    /// Removes the item with the identifier and the first place where that is listed; further places stay, deliberately
    /// without an item.
    void removeItemFor(const ID& id) {
        const ID removed = id;  // It may be one of those that are about to go.
        items_.remove(removed);
        const auto place = std::ranges::find(orderedIdentifiers_, removed);
        if (place != orderedIdentifiers_.end()) orderedIdentifiers_.erase(place);
    }

    /// Removes the place at `index` and the item of the identifier that is listed there; nothing outside the list.
    void removeItemAt(std::integral auto index) {
        const ID* id = lift(orderedIdentifiers_, index);
        if (id == nullptr) return;
        items_.remove(*id);
        orderedIdentifiers_.erase(orderedIdentifiers_.begin() + (id - orderedIdentifiers_.data()));
    }

    /// Removes everything, and gives the memory back.
    void removeAll() noexcept { *this = OrderedIdentifiableItemSet(); }

    /// Whether both list the same identifiers in the same order and hold equal items.
    [[nodiscard]] bool operator==(const OrderedIdentifiableItemSet& other) const
        requires std::equality_comparable<Item>
    {
        const auto isInOther = [&other](const auto& entry) {
            const Item* item = other.itemFor(entry.key);
            return item != nullptr && *item == entry.value;
        };
        return orderedIdentifiers_ == other.orderedIdentifiers_ && items_.size() == other.items_.size() &&
               std::ranges::all_of(items_, isInOther);
    }

  private:
    std::expected<void, SetError> add(Item item, auto place) {
        const ID id = detail::identifier(item);
        if (!items_.tryEmplace(id, std::move(item)).second) {
            return std::unexpected(SetError::existingItemInsertionAttempt());
        }
        orderedIdentifiers_.insert(place(), id);
        return {};
    }

    std::vector<ID> orderedIdentifiers_;
    OrderedDictionary<ID, Item> items_;
};

}  // namespace corvane
