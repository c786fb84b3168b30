#pragma once

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <memory>
#include <new>
#include <type_traits>
#include <utility>

#include <Corvane/Platform/FatalError.hpp>

namespace corvane::detail {

/// Elements side by side in the order in which they came. One that is removed leaves a gap; the last is never a gap.
/// Finding the next element skips gaps 64 at a time.
template <class Element>
class OrderedElements {
    static_assert(std::is_nothrow_move_constructible_v<Element>, "moving a key or a value must not throw");

  public:
    using Position = std::uint32_t;

    static constexpr Position none = std::numeric_limits<Position>::max();
    static constexpr std::size_t mostElements = none - 2;

    OrderedElements() noexcept = default;

    OrderedElements(const OrderedElements& other) : OrderedElements() {
        if (other.size() > 0) reserve(other.size());
        for (Element* element = other.begin(); element != other.end(); element = other.elementFrom(element + 1))
            append([element]() -> const Element& { return *element; });
    }

    OrderedElements(OrderedElements&& other) noexcept { swap(other); }

    OrderedElements& operator=(OrderedElements other) noexcept {
        swap(other);
        return *this;
    }

    ~OrderedElements() {
        destroyElements();
        if constexpr (static_cast<std::size_t>(alignment) > __STDCPP_DEFAULT_NEW_ALIGNMENT__) {
            ::operator delete(static_cast<void*>(elements_), alignment);
        } else {
            ::operator delete(static_cast<void*>(elements_));
        }
    }

    void swap(OrderedElements& other) noexcept {
        std::swap(elements_, other.elements_);
        std::swap(capacity_, other.capacity_);
        std::swap(used_, other.used_);
        std::swap(first_, other.first_);
        std::swap(gaps_, other.gaps_);
    }

    [[nodiscard]] std::size_t size() const noexcept { return used_ - gaps_; }

    [[nodiscard]] std::size_t capacity() const noexcept { return capacity_; }

    [[nodiscard]] Position gaps() const noexcept { return gaps_; }

    [[nodiscard]] bool isFull() const noexcept { return used_ == capacity_; }

    [[nodiscard]] bool hasMoreGapsThanElements() const noexcept { return gaps_ > used_ / 2; }

    // Walking

    [[nodiscard]] Element* begin() const noexcept { return elements_ + first_; }

    [[nodiscard]] Element* end() const noexcept { return elements_ + used_; }

    [[nodiscard]] Position firstPosition() const noexcept { return first_; }

    [[nodiscard]] Position endPosition() const noexcept { return used_; }

    [[nodiscard]] Element& operator[](Position position) const noexcept { return elements_[position]; }

    [[nodiscard]] bool isGap(Position position) const noexcept {
        return (groups()[position / groupSize].gaps >> (position % groupSize) & 1U) != 0;
    }

    /// A place behind `element` before which there is no gap. Looks no further than the group, however far the next
    /// gap.
    [[nodiscard]] Element* gapBehind(Element* element) const noexcept {
        if (gaps_ == 0) return end();
        const std::size_t group = positionOf(element) / groupSize;
        const std::uint64_t gaps = groups()[group].gaps & ~(bitOf(positionOf(element)) - 1);
        const std::size_t place = group * groupSize + static_cast<std::size_t>(std::countr_zero(gaps));
        return elements_ + std::min<std::size_t>(place, used_);
    }

    /// The first element from `place` on, which may be a gap or the end.
    [[nodiscard]] Element* elementFrom(Element* place) const noexcept {
        if (gaps_ == 0 || place == end()) return place;
        return elements_ + elementFrom(positionOf(place));
    }

    [[nodiscard]] Element* elementBefore(Element* place) const noexcept {
        --place;
        if (gaps_ != 0) {
            while (isGap(positionOf(place)))
                --place;
        }
        return place;
    }

    // Changing

    /// Appends what `make` gives, for which there has to be room.
    template <class Make>
    Position append(Make make) {
        ::new (static_cast<void*>(elements_ + used_)) Element(make());
        return used_++;
    }

    void remove(Position position) noexcept {
        // Before the element is touched, for which the processor may have to wait.
        groups()[position / groupSize].gaps |= bitOf(position);
        ++gaps_;
        std::destroy_at(elements_ + position);
        if (position == first_ || position + 1 == used_) [[unlikely]]
            forgetOuterGaps();
    }

    void clear() noexcept {
        destroyElements();
        forgetAll();
    }

    /// Takes memory for `capacity` elements, at least as many as there are. There must be no gaps.
    void reserve(std::size_t capacity) {
        if (capacity > mostElements) fatalError("An ordered collection has too many elements");
        OrderedElements larger;
        larger.elements_ = allocate(capacity);
        larger.capacity_ = static_cast<Position>(capacity);
        for (; larger.used_ < used_; ++larger.used_)
            relocate(elements_ + larger.used_, larger.elements_ + larger.used_);
        used_ = 0;
        swap(larger);
    }

    /// Makes `positionWithoutGaps` right until something changes.
    void countGaps() noexcept {
        std::uint64_t before = 0;
        for (std::size_t i = 0; i < groupCount(used_); ++i) {
            groups()[i].before = before;
            before += groupSize - static_cast<std::uint64_t>(std::popcount(groups()[i].gaps));
        }
    }

    /// Where the element at `position` is going to be when gaps are closed.
    [[nodiscard]] Position positionWithoutGaps(Position position) const noexcept {
        const Group& group = groups()[position / groupSize];
        return static_cast<Position>(group.before) +
               static_cast<Position>(std::popcount(~group.gaps & (bitOf(position) - 1)));
    }

    void closeGaps() noexcept {
        Position filled = 0;
        for (Position position = 0; position < used_; ++position) {
            if (isGap(position)) continue;
            if (filled != position) relocate(elements_ + position, elements_ + filled);
            ++filled;
        }
        forgetAll();
        used_ = filled;
    }

  private:
    static constexpr std::size_t groupSize = 64;

    /// What is known of `groupSize` elements. Stands behind the elements, in the same memory.
    struct Group {
        std::uint64_t gaps = 0;
        /// How many elements there are before this group.
        std::uint64_t before = 0;
    };

    static constexpr std::align_val_t alignment{std::max(alignof(Element), alignof(Group))};

    static constexpr std::size_t groupCount(std::size_t elements) noexcept {
        return (elements + groupSize - 1) / groupSize;
    }

    static constexpr std::size_t groupOffset(std::size_t capacity) noexcept {
        return (capacity * sizeof(Element) + alignof(Group) - 1) / alignof(Group) * alignof(Group);
    }

    static Element* allocate(std::size_t capacity) {
        const std::size_t size = groupOffset(capacity) + groupCount(capacity) * sizeof(Group);
        void* memory = nullptr;
        if constexpr (static_cast<std::size_t>(alignment) > __STDCPP_DEFAULT_NEW_ALIGNMENT__) {
            memory = ::operator new(size, alignment);
        } else {
            memory = ::operator new(size);
        }
        auto* const elements = static_cast<Element*>(memory);
        std::uninitialized_default_construct_n(groupsBehind(elements, capacity), groupCount(capacity));
        return elements;
    }

    static Group* groupsBehind(Element* elements, std::size_t capacity) noexcept {
        return reinterpret_cast<Group*>(reinterpret_cast<std::byte*>(elements) + groupOffset(capacity));
    }

    static constexpr std::uint64_t bitOf(Position position) noexcept {
        return std::uint64_t{1} << (position % groupSize);
    }

    static void relocate(Element* from, Element* to) noexcept {
        std::construct_at(to, std::move(*from));
        std::destroy_at(from);
    }

    [[nodiscard]] Group* groups() const noexcept { return groupsBehind(elements_, capacity_); }

    [[nodiscard]] Position positionOf(const Element* element) const noexcept {
        return static_cast<Position>(element - elements_);
    }

    /// The first position from `position` on that is no gap. There is one.
    [[nodiscard]] Position elementFrom(Position position) const noexcept {
        std::size_t group = position / groupSize;
        std::uint64_t elements = ~groups()[group].gaps & (~std::uint64_t{0} << (position % groupSize));
        while (elements == 0)
            elements = ~groups()[++group].gaps;
        return static_cast<Position>(group * groupSize) + static_cast<Position>(std::countr_zero(elements));
    }

    void destroyElements() noexcept {
        if constexpr (!std::is_trivially_destructible_v<Element>) {
            for (Element* element = begin(); element != end(); element = elementFrom(element + 1))
                std::destroy_at(element);
        }
    }

    void forgetOuterGaps() noexcept {
        if (gaps_ == used_) return forgetAll();
        if (isGap(first_)) first_ = elementFrom(first_);
        for (; isGap(used_ - 1); --used_, --gaps_)
            groups()[(used_ - 1) / groupSize].gaps &= ~bitOf(used_ - 1);
    }

    void forgetAll() noexcept {
        std::fill_n(groups(), groupCount(used_), Group{});
        used_ = first_ = gaps_ = 0;
    }

    Element* elements_ = nullptr;
    Position capacity_ = 0;
    /// Positions in use, gaps included.
    Position used_ = 0;
    /// The first that is no gap.
    Position first_ = 0;
    Position gaps_ = 0;
};

}  // namespace corvane::detail
