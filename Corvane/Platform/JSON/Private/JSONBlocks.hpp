#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

#include <Corvane/Platform/JSON/JSONValue.hpp>

// How JSON values are kept. A block is the content of one text, array or dictionary, and has an owner that
// counts the references to it. What a program builds has one owner a block, from the heap. What is read from
// a document has one owner for all: the document's values point at each other uncounted, and are given back
// with the document's memory, unvisited. Copying a value out of a document therefore keeps all of the
// document.

namespace corvane::detail {

enum class JSONOwnerKind : unsigned char { text, array, dictionary, document };

struct JSONOwner {
    explicit JSONOwner(JSONOwnerKind ownerKind) noexcept : kind(ownerKind) {}

    std::atomic<std::size_t> references{1};
    JSONOwner* next = nullptr;  // while it waits to be destroyed
    const JSONOwnerKind kind;
};

struct JSONBlock {
    JSONOwner* owner = nullptr;
    std::size_t size = 0;
};

/// The characters stand behind the block.
struct JSONTextBlock : JSONBlock {
    [[nodiscard]] std::string_view text() const noexcept { return {reinterpret_cast<const char*>(this + 1), size}; }
};

struct JSONArrayBlock : JSONBlock {
    const JSONValue* elements = nullptr;
};

struct JSONMember {
    JSONBlockReference key;
    JSONValue value;
};

struct JSONDictionaryBlock : JSONBlock {
    const JSONMember* members = nullptr;
    /// Positions plus one by hash of the key, zero for a free slot; empty for small dictionaries.
    std::span<const std::uint32_t> slots;
};

struct JSONHeapText final : JSONOwner, JSONTextBlock {
    JSONHeapText() noexcept : JSONOwner(JSONOwnerKind::text) {}
};

struct JSONHeapArray final : JSONOwner, JSONArrayBlock {
    JSONHeapArray() noexcept : JSONOwner(JSONOwnerKind::array) { owner = this; }

    /// To be called after every change of the vector.
    void publish() noexcept {
        elements = values.data();
        size = values.size();
    }

    std::vector<JSONValue> values;
};

struct JSONHeapDictionary final : JSONOwner, JSONDictionaryBlock {
    JSONHeapDictionary() noexcept : JSONOwner(JSONOwnerKind::dictionary) { owner = this; }

    /// To be called after every change of the vectors.
    void publish() noexcept {
        members = entries.data();
        size = entries.size();
        slots = index;
    }

    /// Appends a member whose key is known to be new.
    void append(JSONMember member);
    void rebuildIndex();

    std::vector<JSONMember> entries;
    std::vector<std::uint32_t> index;
};

/// The memory of one document that was read: a few chunks, each twice as large as the one before.
class JSONDocument final : public JSONOwner {
  public:
    explicit JSONDocument(std::size_t firstChunk) noexcept
        : JSONOwner(JSONOwnerKind::document), nextChunk_(firstChunk) {}

    /// Uninitialised memory for `count` objects, whose destructors are not going to be run.
    template <class T>
    [[nodiscard]] T* allocate(std::size_t count) {
        static_assert(alignof(T) <= alignment);
        return static_cast<T*>(allocateBytes(count * sizeof(T)));
    }

    [[nodiscard]] const JSONTextBlock* makeText(std::string_view text);

  private:
    static constexpr std::size_t alignment = alignof(std::uint64_t);

    [[nodiscard]] void* allocateBytes(std::size_t size) {
        size = (size + alignment - 1) / alignment * alignment;
        if (size > left_) addChunk(size);
        left_ -= size;
        return std::exchange(free_, free_ + size);
    }

    void addChunk(std::size_t size);

    std::vector<std::unique_ptr<std::byte[]>> chunks_;
    std::byte* free_ = nullptr;
    std::size_t left_ = 0;
    std::size_t nextChunk_;
};

/// Dictionaries of more members than this have slots.
inline constexpr std::size_t unindexedMembers = 16;

/// How many slots `members` members want: a power of two, at least half of them free.
[[nodiscard]] std::size_t slotCount(std::size_t members) noexcept;

/// The slot of `key`, or the free slot where it belongs.
[[nodiscard]] std::size_t slotOf(std::string_view key, std::span<const std::uint32_t> slots,
                                 const JSONMember* members) noexcept;

[[nodiscard]] const JSONBlock* makeHeapText(std::string_view text);

[[nodiscard]] inline std::string_view textOf(const JSONBlockReference& text) noexcept {
    return text.get() != nullptr ? static_cast<const JSONTextBlock*>(text.get())->text() : std::string_view();
}

/// The value that absent elements and members are shown as.
[[nodiscard]] const JSONValue& nullJSONValue() noexcept;

/// The way from the public types to their blocks.
struct JSONAccess {
    static const JSONArrayBlock* block(const JSONArray& array) noexcept {
        return static_cast<const JSONArrayBlock*>(array.block_.get());
    }

    static const JSONDictionaryBlock* block(const JSONDictionary& dictionary) noexcept {
        return static_cast<const JSONDictionaryBlock*>(dictionary.block_.get());
    }

    static JSONArray array(const JSONArrayBlock* block) noexcept {
        JSONArray array;
        array.block_ = JSONBlockReference(block);
        return array;
    }

    static JSONDictionary dictionary(const JSONDictionaryBlock* block) noexcept {
        JSONDictionary dictionary;
        dictionary.block_ = JSONBlockReference(block);
        return dictionary;
    }

    static JSONValue textValue(const JSONTextBlock* block) noexcept { return JSONValue(JSONBlockReference(block)); }

    /// Calls `visitor` with what the value holds: `std::monostate` for null, a `JSONBlockReference` for text.
    template <class Visitor>
    static decltype(auto) visit(const JSONValue& value, Visitor&& visitor) {
        return std::visit(std::forward<Visitor>(visitor), value.value_);
    }

    /// Whether the value refers to a block, which is then counted.
    static bool isCounted(const JSONValue& value) noexcept {
        const auto* const text = std::get_if<JSONBlockReference>(&value.value_);
        const JSONArray* const array = value.asArray();
        const JSONDictionary* const dictionary = value.asDictionary();
        return (text != nullptr && text->get() != nullptr) || (array != nullptr && !array->empty()) ||
               (dictionary != nullptr && !dictionary->empty());
    }

    /// The block of an array or dictionary, taken out of its value uncounted; null for everything else.
    static const JSONBlock* detachContainer(JSONValue& value) noexcept {
        if (auto* array = std::get_if<JSONArray>(&value.value_)) return array->block_.detach();
        if (auto* dictionary = std::get_if<JSONDictionary>(&value.value_)) return dictionary->block_.detach();
        return nullptr;
    }
};

}  // namespace corvane::detail
