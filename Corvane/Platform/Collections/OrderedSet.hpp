#pragma once

#include <algorithm>
#include <concepts>
#include <cstddef>
#include <functional>
#include <initializer_list>
#include <utility>

#include <Corvane/Platform/Collections/OrderedDictionary.hpp>

namespace corvane {

/// Different elements in the order in which they came. Everything that `OrderedDictionary` says of its keys holds for
/// them.
///
///     OrderedSet<std::string> seen;
///     if (!seen.insert(team)) return;  // was there
template <class Element, class Hash = SeededHash<Element>, class Equal = std::equal_to<>>
class OrderedSet {
    using Table = detail::OrderedTable<Element, std::identity, Hash, Equal>;

    struct ShowElement {
        const Element& operator()(Element& element) const noexcept { return element; }
    };

  public:
    using key_type = Element;
    using value_type = Element;

    using const_iterator = detail::OrderedIterator<Table, Element, ShowElement>;
    using iterator = const_iterator;

    OrderedSet() noexcept = default;

    OrderedSet(std::initializer_list<Element> elements) {
        reserve(elements.size());
        for (const Element& element : elements)
            insert(element);
    }

    [[nodiscard]] std::size_t size() const noexcept { return table_.size(); }

    [[nodiscard]] bool empty() const noexcept { return size() == 0; }

    [[nodiscard]] const_iterator begin() const noexcept { return {table_.begin(), table_}; }

    [[nodiscard]] const_iterator end() const noexcept { return {table_.end(), table_}; }

    /// The element equal to `element`, null when there is none.
    [[nodiscard]] const Element* find(const Element& element) const { return table_.find(element); }

    template <detail::LookUpKey<Element, Hash, Equal> Other>
    [[nodiscard]] const Element* find(const Other& element) const {
        return table_.find(element);
    }

    [[nodiscard]] bool contains(const Element& element) const { return find(element) != nullptr; }

    template <detail::LookUpKey<Element, Hash, Equal> Other>
    [[nodiscard]] bool contains(const Other& element) const {
        return find(element) != nullptr;
    }

    /// Appends an element that is new, and whether it is. Otherwise the one that is there stays.
    bool insert(const Element& element) {
        return table_.findOrAppend(element, [&]() -> Element { return element; }).second;
    }

    bool insert(Element&& element) {
        return table_.findOrAppend(element, [&]() -> Element { return std::move(element); }).second;
    }

    /// Takes an element out; whether it was there.
    bool remove(const Element& element) { return table_.remove(element); }

    template <detail::LookUpKey<Element, Hash, Equal> Other>
    bool remove(const Other& element) {
        return table_.remove(element);
    }

    /// Takes out every element of which `isUnwanted` is true, in one pass; how many there were.
    template <std::predicate<const Element&> Predicate>
    std::size_t removeIf(Predicate isUnwanted) {
        return table_.removeIf([&](const Element& element) { return isUnwanted(element); });
    }

    /// Takes everything out and keeps the memory.
    void clear() noexcept { table_.clear(); }

    /// Makes room for so many elements in all.
    void reserve(std::size_t count) { table_.reserve(count); }

    [[nodiscard]] bool operator==(const OrderedSet& other) const {
        return size() == other.size() && std::ranges::equal(*this, other, Equal());
    }

  private:
    Table table_;
};

}  // namespace corvane
