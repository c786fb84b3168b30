#include <Corvane/Platform/Collections/SeededHash.hpp>
#include <Corvane/Platform/JSON/JSONCursor.hpp>
#include <Corvane/Platform/JSON/Private/JSONBlocks.hpp>

namespace corvane::detail {

namespace {

constexpr std::size_t usualMembers = 16;

}  // namespace

std::size_t JSONMemberTable::find(std::string_view key, std::size_t likely) const noexcept {
    if (likely < entries_.size() && entries_[likely].key == key) return likely;
    if (!slots_.empty()) {
        const std::uint32_t position = slots_[slotOf(key)];
        return position != 0 ? position - 1 : none;
    }
    for (std::size_t i = 0; i < entries_.size(); ++i) {
        if (entries_[i].key == key) return i;
    }
    return none;
}

void JSONMemberTable::add(std::string_view key, std::uint32_t value) {
    if (const std::size_t position = find(key); position != none) {
        entries_[position].value = value;
        return;
    }
    if (entries_.empty()) entries_.reserve(usualMembers);
    entries_.push_back({key, value});
    if (slotCount(entries_.size()) > slots_.size()) {
        rebuildSlots();
    } else if (!slots_.empty()) {
        slots_[slotOf(key)] = static_cast<std::uint32_t>(entries_.size());
    }
}

void JSONMemberTable::rebuildSlots() {
    slots_.assign(slotCount(entries_.size()), 0);
    for (std::size_t i = 0; i < entries_.size(); ++i)
        slots_[slotOf(entries_[i].key)] = static_cast<std::uint32_t>(i + 1);
}

std::size_t JSONMemberTable::slotOf(std::string_view key) const noexcept {
    const std::size_t mask = slots_.size() - 1;
    std::size_t slot = seededHash(key) & mask;
    while (slots_[slot] != 0 && entries_[slots_[slot] - 1].key != key)
        slot = (slot + 1) & mask;
    return slot;
}

}  // namespace corvane::detail
