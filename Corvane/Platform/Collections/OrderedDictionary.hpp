#pragma once

#include <algorithm>
#include <concepts>
#include <cstddef>
#include <functional>
#include <initializer_list>
#include <type_traits>
#include <utility>

#include <Corvane/Platform/Collections/OrderedIterator.hpp>
#include <Corvane/Platform/Collections/OrderedTable.hpp>
#include <Corvane/Platform/Collections/SeededHash.hpp>

namespace corvane {

namespace detail {

template <class Other, class Key, class Hash, class Equal>
concept LookUpKey = !std::same_as<std::remove_cvref_t<Other>, Key> &&
                    requires(const Hash& hash, const Equal& equal, const Key& key, const Other& other) {
                        typename Hash::is_transparent;
                        typename Equal::is_transparent;
                        hash(other);
                        { equal(key, other) } -> std::convertible_to<bool>;
                    };

}  // namespace detail

/// Values under keys, in the order in which the keys came: a new key is appended, and a new value for a key that is
/// there takes the place of the old one.
///
///     OrderedDictionary<std::string, int> points{{"Rovers", 12}, {"Athletic", 9}};
///     points["United"] = 7;
///     for (const auto& [team, count] : points) print(team, count);
///
/// Finding, adding, replacing and removing a key take constant time on average, and the order survives them all. Few
/// keys are compared one by one, without hashing. Text keys are looked up by anything that is seen as text. The
/// default hash is seeded, so that no back end can choose keys that collide (`SeededHash`).
///
/// A value: copies are independent, two are equal when they hold equal entries in the same order, and one that was
/// moved from is empty. One thread at a time, or many that only read. Adding a key and removing one make iterators and
/// references into the dictionary invalid; giving a key another value does not. Keys and values must be movable without
/// throwing; at most 2^32 - 2 entries.
template <class Key, class Value, class Hash = SeededHash<Key>, class Equal = std::equal_to<>>
class OrderedDictionary {
    struct Slot {
        Key key;
        Value value;
    };

    struct KeyOf {
        const Key& operator()(const Slot& slot) const noexcept { return slot.key; }
    };

    using Table = detail::OrderedTable<Slot, KeyOf, Hash, Equal>;

    /// An entry is shown as a pair of references, so that its key cannot be changed.
    template <class AnyValue>
    struct AnyEntry {
        const Key& key;
        AnyValue& value;
    };

    template <class AnyValue>
    struct ShowEntry {
        ShowEntry() = default;

        template <class Other>
            requires std::same_as<const Other, AnyValue>
        explicit ShowEntry(ShowEntry<Other> /*other*/) noexcept {}

        AnyEntry<AnyValue> operator()(Slot& slot) const noexcept { return {slot.key, slot.value}; }
    };

  public:
    using key_type = Key;
    using mapped_type = Value;
    /// `key` and `value`; also for structured bindings: `for (auto [key, value] : dictionary) value += 1;`.
    using Entry = AnyEntry<Value>;
    using ConstEntry = AnyEntry<const Value>;
    using iterator = detail::OrderedIterator<Table, Slot, ShowEntry<Value>>;
    using const_iterator = detail::OrderedIterator<Table, Slot, ShowEntry<const Value>>;

    OrderedDictionary() noexcept = default;

    /// Of entries with the same key the last value counts, in the place of the first.
    OrderedDictionary(std::initializer_list<std::pair<Key, Value>> entries) {
        reserve(entries.size());
        for (const auto& [key, value] : entries)
            set(key, value);
    }

    [[nodiscard]] std::size_t size() const noexcept { return table_.size(); }

    [[nodiscard]] bool empty() const noexcept { return size() == 0; }

    [[nodiscard]] iterator begin() noexcept { return {table_.begin(), table_}; }

    [[nodiscard]] iterator end() noexcept { return {table_.end(), table_}; }

    [[nodiscard]] const_iterator begin() const noexcept { return {table_.begin(), table_}; }

    [[nodiscard]] const_iterator end() const noexcept { return {table_.end(), table_}; }

    /// The value under `key`, null when there is none.
    [[nodiscard]] Value* find(const Key& key) { return valueOf(table_.find(key)); }

    [[nodiscard]] const Value* find(const Key& key) const { return valueOf(table_.find(key)); }

    template <detail::LookUpKey<Key, Hash, Equal> Other>
    [[nodiscard]] Value* find(const Other& key) {
        return valueOf(table_.find(key));
    }

    template <detail::LookUpKey<Key, Hash, Equal> Other>
    [[nodiscard]] const Value* find(const Other& key) const {
        return valueOf(table_.find(key));
    }

    [[nodiscard]] bool contains(const Key& key) const { return find(key) != nullptr; }

    template <detail::LookUpKey<Key, Hash, Equal> Other>
    [[nodiscard]] bool contains(const Other& key) const {
        return find(key) != nullptr;
    }

    /// The value under `key`, which is appended with a default value when it is new.
    [[nodiscard]] Value& operator[](const Key& key) { return tryEmplace(key).first; }

    [[nodiscard]] Value& operator[](Key&& key) { return tryEmplace(std::move(key)).first; }

    /// Gives `key` this value: a new key is appended, any other keeps its place. Whether it is new.
    template <class AnyKey = Key>
        requires std::constructible_from<Key, AnyKey>
    bool set(AnyKey&& key, Value value) {
        const auto [current, isNew] = tryEmplace(std::forward<AnyKey>(key), std::move(value));
        // NOLINTNEXTLINE(bugprone-use-after-move): what is not new has left it where it was.
        if (!isNew) current = std::move(value);
        return isNew;
    }

    /// Appends `key` with a value made from `arguments` when it is new; otherwise neither is touched. The key's value,
    /// and whether it is new. A text key may be given as anything that is seen as text.
    template <class AnyKey = Key, class... Arguments>
        requires std::constructible_from<Key, AnyKey>
    std::pair<Value&, bool> tryEmplace(AnyKey&& key, Arguments&&... arguments) {
        if constexpr (std::same_as<std::remove_cvref_t<AnyKey>, Key> || detail::LookUpKey<AnyKey, Key, Hash, Equal>) {
            const auto [slot, isNew] = table_.findOrAppend(key, [&] {
                return Slot{Key(std::forward<AnyKey>(key)), Value(std::forward<Arguments>(arguments)...)};
            });
            return {slot->value, isNew};
        } else {
            return tryEmplace(Key(std::forward<AnyKey>(key)), std::forward<Arguments>(arguments)...);
        }
    }

    /// Takes `key` and its value out; whether it was there.
    bool remove(const Key& key) { return table_.remove(key); }

    template <detail::LookUpKey<Key, Hash, Equal> Other>
    bool remove(const Other& key) {
        return table_.remove(key);
    }

    /// Takes out every entry of which `isUnwanted(key, value)` is true, in one pass; how many there were.
    template <std::predicate<const Key&, Value&> Predicate>
    std::size_t removeIf(Predicate isUnwanted) {
        return table_.removeIf([&](Slot& slot) { return isUnwanted(std::as_const(slot.key), slot.value); });
    }

    /// Takes everything out and keeps the memory.
    void clear() noexcept { table_.clear(); }

    /// Makes room for so many entries in all.
    void reserve(std::size_t count) { table_.reserve(count); }

    void swap(OrderedDictionary& other) noexcept { table_.swap(other.table_); }

    [[nodiscard]] bool operator==(const OrderedDictionary& other) const
        requires std::equality_comparable<Value>
    {
        return size() == other.size() && std::ranges::equal(*this, other, [](const auto& a, const auto& b) {
                   return Equal()(a.key, b.key) && a.value == b.value;
               });
    }

  private:
    static Value* valueOf(Slot* slot) noexcept { return slot != nullptr ? &slot->value : nullptr; }

    Table table_;
};

}  // namespace corvane
