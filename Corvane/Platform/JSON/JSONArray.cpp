#include <algorithm>
#include <utility>

#include <Corvane/Platform/JSON/Private/JSONBlocks.hpp>

namespace corvane {

namespace {

using detail::JSONAccess;
using detail::JSONHeapArray;

/// The array's own block, which nobody else refers to: what it has, when it is such, or a copy of it.
JSONHeapArray& ownBlock(JSONArray& array, std::size_t extra) {
    const detail::JSONArrayBlock* const block = JSONAccess::block(array);
    if (block != nullptr && block->owner->kind == detail::JSONOwnerKind::array &&
        block->owner->references.load(std::memory_order_acquire) == 1) {
        return *static_cast<JSONHeapArray*>(block->owner);
    }
    auto copy = std::make_unique<JSONHeapArray>();
    copy->values.reserve(array.size() + extra);
    copy->values.assign(array.begin(), array.end());
    copy->publish();
    array = JSONAccess::array(copy.get());
    return *copy.release();
}

}  // namespace

JSONArray::JSONArray(std::initializer_list<JSONValue> elements) {
    if (elements.size() == 0) return;
    JSONHeapArray& own = ownBlock(*this, 0);
    own.values.assign(elements.begin(), elements.end());
    own.publish();
}

std::size_t JSONArray::size() const noexcept {
    return block_.get() != nullptr ? block_.get()->size : 0;
}

const JSONValue* JSONArray::begin() const noexcept {
    const auto* const block = JSONAccess::block(*this);
    return block != nullptr ? block->elements : nullptr;
}

const JSONValue* JSONArray::end() const noexcept {
    return begin() + size();
}

const JSONValue& JSONArray::operator[](std::size_t index) const noexcept {
    return index < size() ? begin()[index] : detail::nullJSONValue();
}

void JSONArray::reserve(std::size_t count) {
    if (count <= size()) return;
    JSONHeapArray& own = ownBlock(*this, count - size());
    own.values.reserve(count);
    own.publish();
}

void JSONArray::append(JSONValue value) {
    JSONHeapArray& own = ownBlock(*this, 1);
    own.values.push_back(std::move(value));
    own.publish();
}

bool JSONArray::set(std::size_t index, JSONValue value) {
    if (index >= size()) return false;
    // The old value ends after the array is whole again.
    std::swap(ownBlock(*this, 0).values[index], value);
    return true;
}

bool JSONArray::remove(std::size_t index) {
    if (index >= size()) return false;
    JSONHeapArray& own = ownBlock(*this, 0);
    own.values.erase(own.values.begin() + static_cast<std::ptrdiff_t>(index));
    own.publish();
    return true;
}

bool JSONArray::operator==(const JSONArray& other) const {
    return JSONValue(*this) == JSONValue(other);
}

}  // namespace corvane
