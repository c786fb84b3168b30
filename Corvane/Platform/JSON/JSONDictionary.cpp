#include <algorithm>
#include <utility>

#include <Corvane/Platform/JSON/Private/JSONBlocks.hpp>

namespace corvane {

namespace {

using detail::JSONAccess;
using detail::JSONBlockReference;
using detail::JSONDictionaryBlock;
using detail::JSONHeapDictionary;
using detail::JSONMember;

/// The dictionary's own block, which nobody else refers to: what it has, when it is such, or a copy of it.
JSONHeapDictionary& ownBlock(JSONDictionary& dictionary) {
    const JSONDictionaryBlock* const block = JSONAccess::block(dictionary);
    if (block != nullptr && block->owner->kind == detail::JSONOwnerKind::dictionary &&
        block->owner->references.load(std::memory_order_acquire) == 1) {
        return *static_cast<JSONHeapDictionary*>(block->owner);
    }
    auto copy = std::make_unique<JSONHeapDictionary>();
    if (block != nullptr) {
        copy->entries.assign(block->members, block->members + block->size);
        copy->index.assign(block->slots.begin(), block->slots.end());
    }
    copy->publish();
    dictionary = JSONAccess::dictionary(copy.get());
    return *copy.release();
}

const JSONMember* findMember(const JSONDictionaryBlock* block, std::string_view key) noexcept {
    if (block == nullptr) return nullptr;
    if (!block->slots.empty()) {
        const std::uint32_t position = block->slots[detail::slotOf(key, block->slots, block->members)];
        return position != 0 ? &block->members[position - 1] : nullptr;
    }
    const JSONMember* const end = block->members + block->size;
    const auto* const member = std::find_if(
        block->members, end, [key](const JSONMember& candidate) { return detail::textOf(candidate.key) == key; });
    return member != end ? member : nullptr;
}

}  // namespace

JSONDictionary::JSONDictionary(std::initializer_list<std::pair<std::string_view, JSONValue>> members) {
    for (const auto& [key, value] : members)
        set(key, value);
}

auto JSONDictionary::Iterator::operator*() const noexcept -> Member {
    const auto* const member = static_cast<const JSONMember*>(member_);
    return {detail::textOf(member->key), member->value};
}

auto JSONDictionary::Iterator::operator++() noexcept -> Iterator& {
    member_ = static_cast<const JSONMember*>(member_) + 1;
    return *this;
}

auto JSONDictionary::Iterator::operator++(int) noexcept -> Iterator {
    const Iterator before = *this;
    ++*this;
    return before;
}

std::size_t JSONDictionary::size() const noexcept {
    return block_.get() != nullptr ? block_.get()->size : 0;
}

auto JSONDictionary::begin() const noexcept -> Iterator {
    const auto* const block = JSONAccess::block(*this);
    return Iterator(block != nullptr ? block->members : nullptr);
}

auto JSONDictionary::end() const noexcept -> Iterator {
    const auto* const block = JSONAccess::block(*this);
    return Iterator(block != nullptr ? block->members + block->size : nullptr);
}

const JSONValue* JSONDictionary::find(std::string_view key) const noexcept {
    const JSONMember* const member = findMember(JSONAccess::block(*this), key);
    return member != nullptr ? &member->value : nullptr;
}

const JSONValue& JSONDictionary::operator[](std::string_view key) const noexcept {
    const JSONValue* const value = find(key);
    return value != nullptr ? *value : detail::nullJSONValue();
}

void JSONDictionary::set(std::string_view key, JSONValue value) {
    JSONHeapDictionary& own = ownBlock(*this);
    if (const JSONMember* const member = findMember(&own, key)) {
        // The old value ends after the dictionary is whole again.
        std::swap(own.entries[static_cast<std::size_t>(member - own.members)].value, value);
        return;
    }
    own.append({JSONBlockReference(detail::makeHeapText(key)), std::move(value)});
    own.publish();
}

bool JSONDictionary::remove(std::string_view key) {
    if (!contains(key)) return false;
    JSONHeapDictionary& own = ownBlock(*this);
    own.entries.erase(own.entries.begin() + (findMember(&own, key) - own.members));
    own.rebuildIndex();
    own.publish();
    return true;
}

bool JSONDictionary::operator==(const JSONDictionary& other) const {
    return JSONValue(*this) == JSONValue(other);
}

}  // namespace corvane
