#pragma once

#include <concepts>
#include <cstddef>
#include <iterator>
#include <type_traits>

namespace corvane::detail {

/// Walks over the elements of an ordered table and shows each as `Show` says: by reference, or as a value made of
/// references.
template <class Table, class Element, class Show>
class OrderedIterator {
  public:
    using reference = std::invoke_result_t<Show, Element&>;
    using value_type = std::remove_cvref_t<reference>;
    using pointer = void;
    using difference_type = std::ptrdiff_t;
    // Not all references are references to something, but std::prev and its like need nothing else than this.
    using iterator_category = std::bidirectional_iterator_tag;

    OrderedIterator() noexcept = default;

    OrderedIterator(Element* element, const Table& table) noexcept
        : element_(element), stop_(element != table.end() ? table.gapBehind(element) : element), table_(&table) {}

    template <class Other>
        requires(!std::same_as<Other, Show> && std::constructible_from<Show, Other>)
    // NOLINTNEXTLINE(google-explicit-constructor): as iterators turn into those of constants.
    OrderedIterator(const OrderedIterator<Table, Element, Other>& other) noexcept
        : element_(other.element_), stop_(other.stop_), table_(other.table_) {}

    [[nodiscard]] reference operator*() const noexcept { return Show()(*element_); }

    [[nodiscard]] auto operator->() const noexcept {
        if constexpr (std::is_reference_v<reference>) {
            return &**this;
        } else {
            struct Arrow {
                value_type value;

                const value_type* operator->() const noexcept { return &value; }
            };

            return Arrow{**this};
        }
    }

    OrderedIterator& operator++() noexcept {
        if (++element_ == stop_) [[unlikely]] {
            element_ = table_->elementFrom(element_);
            if (element_ != table_->end()) stop_ = table_->gapBehind(element_);
        }
        return *this;
    }

    OrderedIterator operator++(int) noexcept {
        const OrderedIterator before = *this;
        ++*this;
        return before;
    }

    OrderedIterator& operator--() noexcept {
        element_ = table_->elementBefore(element_);
        stop_ = element_ + 1;
        return *this;
    }

    OrderedIterator operator--(int) noexcept {
        const OrderedIterator before = *this;
        --*this;
        return before;
    }

    [[nodiscard]] bool operator==(const OrderedIterator& other) const noexcept { return element_ == other.element_; }

  private:
    template <class, class, class>
    friend class OrderedIterator;

    Element* element_ = nullptr;
    /// No gap is looked for before this.
    Element* stop_ = nullptr;
    const Table* table_ = nullptr;
};

}  // namespace corvane::detail
