#pragma once

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

#include <Corvane/Platform/Collections/OrderedElements.hpp>

namespace corvane::detail {

/// What the ordered collections stand on: their elements, and a table of open addresses from their keys' hashes to
/// their positions. Few elements are searched through without a table.
///
/// Removing costs as little as finding, as it leaves gaps; there are never many more gaps than elements.
///
/// `KeyOf` gives the key of an element.
template <class Element, class KeyOf, class Hash, class Equal>
class OrderedTable {
    using Elements = OrderedElements<Element>;
    using Position = typename Elements::Position;

  public:
    OrderedTable() noexcept = default;

    OrderedTable(const OrderedTable& other) : elements_(other.elements_), hash_(other.hash_), equal_(other.equal_) {
        if (const std::size_t size = tableSize(elements_.size()); size > 0) resizeTable(size);
    }

    OrderedTable(OrderedTable&& other) noexcept { swap(other); }

    OrderedTable& operator=(OrderedTable other) noexcept {
        swap(other);
        return *this;
    }

    ~OrderedTable() = default;

    void swap(OrderedTable& other) noexcept {
        elements_.swap(other.elements_);
        table_.swap(other.table_);
        std::swap(filled_, other.filled_);
        std::swap(hash_, other.hash_);
        std::swap(equal_, other.equal_);
    }

    [[nodiscard]] std::size_t size() const noexcept { return elements_.size(); }

    // For iterators

    [[nodiscard]] Element* begin() const noexcept { return elements_.begin(); }

    [[nodiscard]] Element* end() const noexcept { return elements_.end(); }

    [[nodiscard]] Element* gapBehind(Element* element) const noexcept { return elements_.gapBehind(element); }

    [[nodiscard]] Element* elementFrom(Element* place) const noexcept { return elements_.elementFrom(place); }

    [[nodiscard]] Element* elementBefore(Element* place) const noexcept { return elements_.elementBefore(place); }

    /// The element with an equal key, null when there is none.
    template <class Key>
    [[nodiscard]] Element* find(const Key& key) const {
        const Position position = lookUp(key, hashOf(key)).position;
        return position != none ? &elements_[position] : nullptr;
    }

    /// The element with an equal key, or else the one that `make` makes, appended, and whether it was made.
    template <class Key, class Make>
    std::pair<Element*, bool> findOrAppend(const Key& key, Make make) {
        const std::uint32_t hash = hashOf(key);
        const Found found = lookUp(key, hash);
        if (found.position != none) return {&elements_[found.position], false};
        if (elements_.isFull() || wantsTable()) [[unlikely]]
            return {appendGrowing(make), true};
        const Position position = elements_.append(make);
        if (!table_.empty()) fill(found.place, Place(hash, position));
        return {&elements_[position], true};
    }

    template <class Key>
    bool remove(const Key& key) {
        const Found found = lookUp(key, hashOf(key));
        if (found.position == none) return false;
        removeAt(found.position, found.place);
        closeManyGaps();
        return true;
    }

    /// Removes the elements of which `isUnwanted` is true.
    template <class Predicate>
    std::size_t removeIf(Predicate isUnwanted) {
        const std::size_t before = size();
        for (Position position = elements_.firstPosition(); position < elements_.endPosition(); ++position) {
            if (elements_.isGap(position) || !isUnwanted(elements_[position])) continue;
            removeAt(position, placeOf(position));
        }
        closeManyGaps();
        return before - size();
    }

    void clear() noexcept {
        elements_.clear();
        if (filled_ > 0) std::ranges::fill(table_, Place());
        filled_ = 0;
    }

    void reserve(std::size_t count) {
        if (count > elements_.capacity()) {
            if (elements_.gaps() > 0) closeGaps();
            elements_.reserve(count);
        }
        if (tableSize(count) > table_.size()) resizeTable(tableSize(count));
    }

  private:
    static constexpr Position none = Elements::none;
    /// Marks a place whose element was removed, so that no search ends there.
    static constexpr Position removed = none - 1;
    /// So many are searched through one by one.
    static constexpr std::size_t untabled = 8;

    /// A place in the table. Keeping the hash spares most looks at keys, and hashing them again.
    class Place {
      public:
        Place() = default;

        Place(std::uint32_t hash, Position position) noexcept : hash_(hash), inverted_(~position) {}

        [[nodiscard]] std::uint32_t hash() const noexcept { return hash_; }

        /// `none` where the place is free, or `removed`.
        [[nodiscard]] Position position() const noexcept { return ~inverted_; }

        void move(Position position) noexcept { inverted_ = ~position; }

      private:
        // Free places are all zeros, which memory is filled with fastest.
        static_assert(static_cast<Position>(~none) == 0);

        std::uint32_t hash_ = 0;
        Position inverted_ = 0;
    };

    struct Found {
        Position position = none;
        /// Where in the table, if there is one: the element's place, or the free one at which the search ended.
        std::size_t place = 0;
    };

    // Gaps

    void removeAt(Position position, std::size_t place) noexcept {
        if (!table_.empty()) table_[place].move(removed);
        elements_.remove(position);
    }

    void closeManyGaps() noexcept {
        // The table's size counts too, as all of it is gone through.
        const std::size_t gaps = elements_.gaps();
        if (gaps > 32 && elements_.hasMoreGapsThanElements() && gaps > table_.size() / 16) closeGaps();
    }

    void closeGaps() noexcept {
        elements_.countGaps();
        for (Place& place : table_) {
            if (place.position() < removed) place.move(elements_.positionWithoutGaps(place.position()));
        }
        elements_.closeGaps();
    }

    /// Appends what `make` gives, which has a new key, where room has to be made for it.
    template <class Make>
    [[gnu::noinline]] Element* appendGrowing(Make& make) {
        // What it is made from may be inside us, so it is made before anything moves.
        Element element = make();
        if (elements_.isFull()) makeRoom();
        if (wantsTable()) growTable();
        const std::uint32_t hash = hashOf(KeyOf()(element));
        const Position position = elements_.append([&element]() -> Element&& { return std::move(element); });
        if (!table_.empty()) put(Place(hash, position));
        return &elements_[position];
    }

    void makeRoom() {
        constexpr std::size_t smallest = 4;
        const bool isHalfEmpty = elements_.hasMoreGapsThanElements();
        if (elements_.gaps() > 0) closeGaps();
        if (!isHalfEmpty) elements_.reserve(std::max(smallest, elements_.capacity() * 2));
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
        if constexpr (requires { typename Hash::is_avalanching; }) {
            return static_cast<std::uint32_t>(hash_(key));
        } else {
            // Spreads a hash that says little in its low or in its high half.
            constexpr std::uint64_t goldenRatio = 0x9e3779b97f4a7c15;
            return static_cast<std::uint32_t>((static_cast<std::uint64_t>(hash_(key)) * goldenRatio) >> 32);
        }
    }

    template <class Key>
    [[nodiscard, gnu::always_inline]] inline Found lookUp(const Key& key, std::uint32_t hash) const {
        if (table_.empty()) {
            for (Position position = elements_.firstPosition(); position < elements_.endPosition(); ++position) {
                if (!elements_.isGap(position) && equal_(KeyOf()(elements_[position]), key)) return {position};
            }
            return {};
        }
        const std::size_t mask = table_.size() - 1;
        for (std::size_t at = hash & mask;; at = (at + 1) & mask) {
            const Place place = table_[at];
            const Position position = place.position();
            if (position == none) return {none, at};
            if (place.hash() == hash && position != removed && equal_(KeyOf()(elements_[position]), key)) {
                return {position, at};
            }
        }
    }

    /// Where in the table an element is; zero where there is no table.
    [[nodiscard]] std::size_t placeOf(Position position) const {
        if (table_.empty()) return 0;
        const std::size_t mask = table_.size() - 1;
        std::size_t at = hashOf(KeyOf()(elements_[position])) & mask;
        while (table_[at].position() != position)
            at = (at + 1) & mask;
        return at;
    }

    void put(Place place) noexcept {
        const std::size_t mask = table_.size() - 1;
        std::size_t at = place.hash() & mask;
        while (table_[at].position() != none)
            at = (at + 1) & mask;
        fill(at, place);
    }

    void fill(std::size_t at, Place place) noexcept {
        table_[at] = place;
        ++filled_;
    }

    /// Whether one more element needs a table, or a new one. At least half of the places have to be free.
    [[nodiscard]] bool wantsTable() const noexcept {
        return table_.empty() ? size() == untabled : (filled_ + 1) * 2 > table_.size();
    }

    void growTable() {
        const std::size_t wanted = tableSize(std::max(elements_.capacity(), size() + 1));
        if (wanted > table_.size()) return resizeTable(wanted);
        // Not too soon again, however elements come and go.
        const bool isHalfNeeded = (size() + 1) * 4 > table_.size();
        resizeTable(isHalfNeeded ? table_.size() * 2 : table_.size());
    }

    /// Makes the table anew.
    void resizeTable(std::size_t size) {
        std::vector<Place> places(size);
        places.swap(table_);
        filled_ = 0;
        for (const Place& place : places) {
            if (place.position() < removed) put(place);
        }
        if (!places.empty()) return;
        for (Position position = elements_.firstPosition(); position < elements_.endPosition(); ++position) {
            if (!elements_.isGap(position)) put(Place(hashOf(KeyOf()(elements_[position])), position));
        }
    }

    Elements elements_;
    std::vector<Place> table_;
    /// Places that are not free.
    std::size_t filled_ = 0;
    [[no_unique_address]] Hash hash_;
    [[no_unique_address]] Equal equal_;
};

}  // namespace corvane::detail
