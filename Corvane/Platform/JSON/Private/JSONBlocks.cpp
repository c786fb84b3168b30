#include <algorithm>
#include <bit>
#include <cstring>
#include <new>
#include <utility>

#include <Corvane/Platform/Collections/SeededHash.hpp>
#include <Corvane/Platform/JSON/Private/JSONBlocks.hpp>

namespace corvane::detail {

namespace {

/// Puts `owner` on the list of the dead when `block` was the last reference to it.
void dropInto(JSONOwner*& dead, const JSONBlock* block) noexcept {
    if (block == nullptr || block->owner->references.fetch_sub(1, std::memory_order_acq_rel) != 1) return;
    block->owner->next = dead;
    dead = block->owner;
}

}  // namespace

void JSONBlockReference::retain(const JSONBlock* block) noexcept {
    block->owner->references.fetch_add(1, std::memory_order_relaxed);
}

void JSONBlockReference::release(const JSONBlock* block) noexcept {
    // A list instead of recursion: values may be nested deeper than the stack is.
    JSONOwner* dead = nullptr;
    dropInto(dead, block);
    while (dead != nullptr) {
        JSONOwner* const owner = std::exchange(dead, dead->next);
        switch (owner->kind) {
            case JSONOwnerKind::text: {
                auto* const text = static_cast<JSONHeapText*>(owner);
                text->~JSONHeapText();
                ::operator delete(text);
                break;
            }
            case JSONOwnerKind::array: {
                auto* const array = static_cast<JSONHeapArray*>(owner);
                for (JSONValue& value : array->values)
                    dropInto(dead, JSONAccess::detachContainer(value));
                delete array;
                break;
            }
            case JSONOwnerKind::dictionary: {
                auto* const dictionary = static_cast<JSONHeapDictionary*>(owner);
                for (JSONMember& member : dictionary->entries) {
                    dropInto(dead, JSONAccess::detachContainer(member.value));
                }
                delete dictionary;
                break;
            }
            case JSONOwnerKind::document:
                delete static_cast<JSONDocument*>(owner);
                break;
        }
    }
}

const JSONBlock* makeHeapText(std::string_view text) {
    if (text.empty()) return nullptr;
    // The characters are reached by way of the memory: seen from the block they are out of bounds.
    auto* const memory = static_cast<std::byte*>(::operator new(sizeof(JSONHeapText) + text.size()));
    auto* const block = ::new (memory) JSONHeapText();
    block->owner = block;
    block->size = text.size();
    std::memcpy(memory + sizeof(JSONHeapText), text.data(), text.size());
    return block;
}

void JSONDocument::addChunk(std::size_t size) {
    left_ = std::max(size, nextChunk_);
    nextChunk_ = left_ * 2;
    free_ = chunks_.emplace_back(std::make_unique_for_overwrite<std::byte[]>(left_)).get();
}

const JSONTextBlock* JSONDocument::makeText(std::string_view text) {
    if (text.empty()) return nullptr;
    auto* const memory = static_cast<std::byte*>(allocateBytes(sizeof(JSONTextBlock) + text.size()));
    auto* const block = ::new (memory) JSONTextBlock{{this, text.size()}};
    std::memcpy(memory + sizeof(JSONTextBlock), text.data(), text.size());
    return block;
}

std::size_t slotCount(std::size_t members) noexcept {
    return members <= unindexedMembers ? 0 : std::bit_ceil(members * 2);
}

std::size_t slotOf(std::string_view key, std::span<const std::uint32_t> slots, const JSONMember* members) noexcept {
    const std::size_t mask = slots.size() - 1;
    std::size_t slot = seededHash(key) & mask;
    while (slots[slot] != 0 && textOf(members[slots[slot] - 1].key) != key)
        slot = (slot + 1) & mask;
    return slot;
}

void JSONHeapDictionary::append(JSONMember member) {
    entries.push_back(std::move(member));
    if (slotCount(entries.size()) > index.size()) {
        rebuildIndex();
    } else if (!index.empty()) {
        index[slotOf(textOf(entries.back().key), index, entries.data())] = static_cast<std::uint32_t>(entries.size());
    }
}

void JSONHeapDictionary::rebuildIndex() {
    index.assign(slotCount(entries.size()), 0);
    if (index.empty()) return;
    for (std::size_t i = 0; i < entries.size(); ++i) {
        index[slotOf(textOf(entries[i].key), index, entries.data())] = static_cast<std::uint32_t>(i + 1);
    }
}

const JSONValue& nullJSONValue() noexcept {
    static constexpr JSONValue null;
    return null;
}

}  // namespace corvane::detail
