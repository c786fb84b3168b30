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
#include <vector>

#include <Corvane/Platform/FatalError.hpp>

namespace corvane::detail {

/// What the ordered collections stand on: elements side by side in the order in which they came, and a table of open
/// addresses from their keys' hashes to their positions.
///
/// An element that is removed leaves a gap, so that removing costs as little as finding. The last element is never a
/// gap, and there are never many more gaps than elements. Few elements are searched through without a table.
///
/// `KeyOf` gives the key of an element.
template <class Element, class KeyOf, class Hash, class Equal>
class OrderedTable {
    static_assert(std::is_nothrow_move_constructible_v<Element>, "moving a key or a value must not throw");

  public:
    OrderedTable() noexcept = default;

    OrderedTable(const OrderedTable& other) : OrderedTable() {
        hash_ = other.hash_;
        equal_ = other.equal_;
        reserve(other.size());
        for (const Element* element = other.begin(); element != other.end(); element = other.next(element)) {
            std::construct_at(elements_ + used_, *element);
            ++used_;
        }
        fillTable();
    }

    OrderedTable(OrderedTable&& other) noexcept : OrderedTable() { swap(other); }

    OrderedTable& operator=(const OrderedTable& other) {
        if (this != &other) OrderedTable(other).swap(*this);
        return *this;
    }

    OrderedTable& operator=(OrderedTable&& other) noexcept {
        OrderedTable(std::move(other)).swap(*this);
        return *this;
    }

    ~OrderedTable() {
        destroyElements();
        deallocate(elements_);
    }

    void swap(OrderedTable& other) noexcept {
        std::swap(elements_, other.elements_);
        std::swap(capacity_, other.capacity_);
        std::swap(used_, other.used_);
        std::swap(first_, other.first_);
        std::swap(gaps_, other.gaps_);
        table_.swap(other.table_);
        std::swap(hash_, other.hash_);
        std::swap(equal_, other.equal_);
    }

    [[nodiscard]] std::size_t size() const noexcept { return used_ - gaps_; }

    [[nodiscard]] Element* begin() const noexcept { return elements_ + first_; }

    [[nodiscard]] Element* end() const noexcept { return elements_ + used_; }

    template <class AnyElement>
    [[nodiscard]] AnyElement* next(AnyElement* element) const noexcept {
        ++element;
        if (gaps_ == 0 || element == end()) return element;
        return elements_ + elementFrom(static_cast<std::uint32_t>(element - elements_));
    }

    template <class AnyElement>
    [[nodiscard]] AnyElement* previous(AnyElement* element) const noexcept {
        --element;
        if (gaps_ != 0) {
            while (isGap(static_cast<std::uint32_t>(element - elements_)))
                --element;
        }
        return element;
    }

    /// The element with an equal key, null when there is none.
    template <class Key>
    [[nodiscard]] Element* find(const Key& key) const {
        const std::uint32_t position = positionOf(key, hashOf(key));
        return position != none ? elements_ + position : nullptr;
    }

    /// The element with an equal key, or else the one that `make` makes, appended, and whether it was made.
    template <class Key, class Make>
    std::pair<Element*, bool> findOrAppend(const Key& key, Make make) {
        std::uint32_t hash = hashOf(key);
        if (const std::uint32_t position = positionOf(key, hash); position != none) {
            return {elements_ + position, false};
        }
        if (used_ == capacity_) {
            // What it is made from may be inside us, so it is made before anything moves.
            Element element = make();
            if (gaps_ > used_ / 2) {
                closeGaps();
            } else {
                moveTo(grownCapacity());
            }
            if (const std::size_t wanted = tableSize(size() + 1); wanted > table_.size()) {
                growTable(capacity_);
                hash = hashOf(KeyOf()(element));
            }
            std::construct_at(elements_ + used_, std::move(element));
        } else {
            if (const std::size_t wanted = tableSize(size() + 1); wanted > table_.size()) {
                growTable(capacity_);
                hash = hashOf(key);
            }
            ::new (static_cast<void*>(elements_ + used_)) Element(make());
        }
        if (!table_.empty()) put({hash, used_});
        return {elements_ + used_++, true};
    }

    template <class Key>
    bool remove(const Key& key) {
        const std::uint32_t hash = hashOf(key);
        const std::uint32_t position = positionOf(key, hash);
        if (position == none) return false;
        removeAt(position, hash);
        closeManyGaps();
        return true;
    }

    /// Removes the elements of which `isUnwanted` is true.
    template <class Predicate>
    std::size_t removeIf(Predicate isUnwanted) {
        const std::size_t before = size();
        for (std::uint32_t position = first_; position < used_; ++position) {
            if (isGap(position) || !isUnwanted(elements_[position])) continue;
            removeAt(position, hashOf(KeyOf()(elements_[position])));
        }
        closeManyGaps();
        return before - size();
    }

    void clear() noexcept {
        destroyElements();
        std::ranges::fill_n(groups(), static_cast<std::ptrdiff_t>(groupCount(used_)), Group{});
        std::ranges::fill(table_, Place{});
        used_ = first_ = gaps_ = 0;
    }

    void reserve(std::size_t count) {
        if (count > capacity_) moveTo(count);
        if (tableSize(count) > table_.size()) growTable(count);
    }

  private:
    static constexpr std::uint32_t none = std::numeric_limits<std::uint32_t>::max();
    /// So many are searched through one by one.
    static constexpr std::size_t untabled = 8;
    static constexpr std::size_t groupSize = 64;

    /// A place in the table. Keeping the hash spares most looks at keys, and hashing them again.
    struct Place {
        std::uint32_t hash = 0;
        std::uint32_t position = none;
    };

    /// What is known of `groupSize` elements. Stands behind the elements, in the same memory.
    struct Group {
        std::uint64_t gaps = 0;
        /// How many elements there are before this group; only right while gaps are closed.
        std::uint64_t before = 0;
    };

    // Memory

    static constexpr std::align_val_t alignment{std::max(alignof(Element), alignof(Group))};

    static constexpr std::size_t groupCount(std::size_t elements) noexcept {
        return (elements + groupSize - 1) / groupSize;
    }

    static constexpr std::size_t groupOffset(std::size_t capacity) noexcept {
        return (capacity * sizeof(Element) + alignof(Group) - 1) / alignof(Group) * alignof(Group);
    }

    static Element* allocate(std::size_t capacity) {
        if (capacity >= none) fatalError("An ordered collection has too many elements");
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

    static void deallocate(Element* elements) noexcept {
        if constexpr (static_cast<std::size_t>(alignment) > __STDCPP_DEFAULT_NEW_ALIGNMENT__) {
            ::operator delete(static_cast<void*>(elements), alignment);
        } else {
            ::operator delete(static_cast<void*>(elements));
        }
    }

    static Group* groupsBehind(Element* elements, std::size_t capacity) noexcept {
        return reinterpret_cast<Group*>(reinterpret_cast<std::byte*>(elements) + groupOffset(capacity));
    }

    [[nodiscard]] Group* groups() const noexcept { return groupsBehind(elements_, capacity_); }

    void destroyElements() noexcept {
        if constexpr (!std::is_trivially_destructible_v<Element>) {
            for (Element* element = begin(); element != end(); element = next(element))
                std::destroy_at(element);
        }
    }

    [[nodiscard]] std::size_t grownCapacity() const noexcept {
        constexpr std::size_t smallest = 4;
        return std::max(smallest, std::size_t{capacity_} * 2);
    }

    static void relocate(Element* from, Element* to) noexcept {
        std::construct_at(to, std::move(*from));
        std::destroy_at(from);
    }

    /// Gives the elements memory of their own for `capacity` of them, without gaps.
    void moveTo(std::size_t capacity) {
        if (gaps_ > 0) closeGaps();
        Element* const elements = allocate(capacity);
        for (std::uint32_t i = 0; i < used_; ++i)
            relocate(elements_ + i, elements + i);
        deallocate(std::exchange(elements_, elements));
        capacity_ = static_cast<std::uint32_t>(capacity);
    }

    // Gaps

    [[nodiscard]] bool isGap(std::uint32_t position) const noexcept {
        return (groups()[position / groupSize].gaps >> (position % groupSize) & 1U) != 0;
    }

    /// The first position from `position` on that is no gap. There is one.
    [[nodiscard]] std::uint32_t elementFrom(std::uint32_t position) const noexcept {
        const Group* group = groups() + position / groupSize;
        std::uint64_t elements = ~group->gaps & (~std::uint64_t{0} << (position % groupSize));
        while (elements == 0)
            elements = ~(++group)->gaps;
        return static_cast<std::uint32_t>(static_cast<std::size_t>(group - groups()) * groupSize) +
               static_cast<std::uint32_t>(std::countr_zero(elements));
    }

    void removeAt(std::uint32_t position, std::uint32_t hash) noexcept {
        if (!table_.empty()) takeOut(hash, position);
        std::destroy_at(elements_ + position);
        groups()[position / groupSize].gaps |= std::uint64_t{1} << (position % groupSize);
        ++gaps_;
        if (gaps_ == used_) {
            std::ranges::fill_n(groups(), static_cast<std::ptrdiff_t>(groupCount(used_)), Group{});
            used_ = first_ = gaps_ = 0;
            return;
        }
        if (position == first_) first_ = elementFrom(position);
        for (; isGap(used_ - 1); --used_, --gaps_)
            groups()[(used_ - 1) / groupSize].gaps &= ~(std::uint64_t{1} << ((used_ - 1) % groupSize));
    }

    void closeManyGaps() noexcept {
        // The table's size counts too, as all of it is gone through.
        if (gaps_ > 32 && gaps_ > used_ / 2 && gaps_ > table_.size() / 16) closeGaps();
    }

    void closeGaps() noexcept {
        std::uint64_t before = 0;
        for (std::size_t i = 0; i < groupCount(used_); ++i) {
            Group& group = groups()[i];
            group.before = before;
            before += groupSize - static_cast<std::uint64_t>(std::popcount(group.gaps));
        }
        for (Place& place : table_) {
            if (place.position == none) continue;
            const Group& group = groups()[place.position / groupSize];
            const std::uint64_t earlier = ~group.gaps & ((std::uint64_t{1} << (place.position % groupSize)) - 1);
            place.position =
                static_cast<std::uint32_t>(group.before) + static_cast<std::uint32_t>(std::popcount(earlier));
        }
        std::uint32_t filled = 0;
        for (std::uint32_t position = 0; position < used_; ++position) {
            if (isGap(position)) continue;
            if (filled != position) relocate(elements_ + position, elements_ + filled);
            ++filled;
        }
        std::ranges::fill_n(groups(), static_cast<std::ptrdiff_t>(groupCount(used_)), Group{});
        used_ = filled;
        first_ = gaps_ = 0;
    }

    // The table

    /// How many places so many elements want: a power of two, at least half of them free; none for few.
    static std::size_t tableSize(std::size_t elements) noexcept {
        return elements <= untabled ? 0 : std::bit_ceil(elements * 2);
    }

    /// Zero where there is no table.
    template <class Key>
    [[nodiscard]] std::uint32_t hashOf(const Key& key) const {
        if (table_.empty()) return 0;
        // Spreads a hash that says little in its low or in its high half.
        constexpr std::uint64_t goldenRatio = 0x9e3779b97f4a7c15;
        return static_cast<std::uint32_t>((static_cast<std::uint64_t>(hash_(key)) * goldenRatio) >> 32);
    }

    template <class Key>
    [[nodiscard]] std::uint32_t positionOf(const Key& key, std::uint32_t hash) const {
        if (table_.empty()) {
            for (std::uint32_t position = first_; position < used_; ++position) {
                if (!isGap(position) && equal_(KeyOf()(elements_[position]), key)) return position;
            }
            return none;
        }
        const std::size_t mask = table_.size() - 1;
        std::size_t at = hash & mask;
        while (table_[at].position != none &&
               (table_[at].hash != hash || !equal_(KeyOf()(elements_[table_[at].position]), key)))
            at = (at + 1) & mask;
        return table_[at].position;
    }

    void put(Place place) noexcept {
        const std::size_t mask = table_.size() - 1;
        std::size_t at = place.hash & mask;
        while (table_[at].position != none)
            at = (at + 1) & mask;
        table_[at] = place;
    }

    /// Frees the place of an element and moves those behind it up, so that no search ends too early.
    void takeOut(std::uint32_t hash, std::uint32_t position) noexcept {
        const std::size_t mask = table_.size() - 1;
        std::size_t free = hash & mask;
        while (table_[free].position != position)
            free = (free + 1) & mask;
        for (std::size_t at = (free + 1) & mask; table_[at].position != none; at = (at + 1) & mask) {
            const std::size_t distance = (at - table_[at].hash) & mask;
            if (distance < ((at - free) & mask)) continue;
            table_[free] = table_[at];
            free = at;
        }
        table_[free] = Place{};
    }

    /// Makes the table fit `elements`. Gaps stay.
    void growTable(std::size_t elements) {
        std::vector<Place> places(tableSize(elements));
        places.swap(table_);
        if (places.empty()) return fillTable();
        for (const Place& place : places) {
            if (place.position != none) put(place);
        }
    }

    void fillTable() {
        if (table_.empty()) return;
        for (std::uint32_t position = first_; position < used_; ++position) {
            if (!isGap(position)) put({hashOf(KeyOf()(elements_[position])), position});
        }
    }

    Element* elements_ = nullptr;
    std::uint32_t capacity_ = 0;
    /// Positions in use, gaps included.
    std::uint32_t used_ = 0;
    /// The first that is no gap.
    std::uint32_t first_ = 0;
    std::uint32_t gaps_ = 0;
    std::vector<Place> table_;
    [[no_unique_address]] Hash hash_;
    [[no_unique_address]] Equal equal_;
};

}  // namespace corvane::detail
