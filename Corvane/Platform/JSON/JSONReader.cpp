#include <algorithm>
#include <charconv>
#include <cstdint>
#include <iterator>
#include <memory>
#include <new>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>

#include <simdjson.h>

#include <Corvane/Platform/Data.hpp>
#include <Corvane/Platform/JSON/Private/JSONBlocks.hpp>
#include <Corvane/Platform/JSON/Private/JSONErrors.hpp>
#include <Corvane/Platform/JSON/Private/JSONReader.hpp>

namespace corvane::detail {

namespace {

namespace dom = simdjson::dom;

static_assert(Data::padding >= simdjson::SIMDJSON_PADDING);

/// A parser reserves about 14 bytes for each byte of the largest input it has seen and makes use of about 5 of them.
/// Every thread that reads JSON keeps its parser until it ends, but not one that has grown beyond this: a single large
/// document must not cost its memory for ever.
constexpr std::size_t keptCapacity = std::size_t{1} << 20;

dom::parser& threadParser() {
    thread_local dom::parser parser;
    return parser;
}

/// The size that the document's tape states is cut off at this.
constexpr std::size_t statedSizeLimit = 0xFFFFFF;

template <class Container>
std::size_t countOf(Container container) {
    const std::size_t stated = container.size();
    if (stated < statedSizeLimit) return stated;
    return static_cast<std::size_t>(std::distance(container.begin(), container.end()));
}

/// Finds repeated keys while the members of one dictionary are laid out.
class MemberLookup {
  public:
    MemberLookup(JSONDocument& document, const JSONMember* members, std::size_t capacity) : members_(members) {
        const std::size_t slots = slotCount(capacity);
        if (slots == 0) return;
        slots_ = {document.allocate<std::uint32_t>(slots), slots};
        std::ranges::fill(slots_, 0);
    }

    /// The position of the member called `key`; adds it at position `count` when there is none.
    std::size_t findOrAdd(std::string_view key, std::size_t count) {
        if (!slots_.empty()) {
            std::uint32_t& slot = slots_[slotOf(key, slots_, members_)];
            if (slot == 0) slot = static_cast<std::uint32_t>(count + 1);
            return slot - 1;
        }
        // Keys that differ in a few of their characters almost never share a bit, and then nothing is
        // compared.
        const auto mark = std::uint64_t{1} << fingerprint(key);
        if ((std::exchange(seen_, seen_ | mark) & mark) == 0) return count;
        std::size_t position = 0;
        while (position < count && textOf(members_[position].key) != key)
            ++position;
        return position;
    }

    [[nodiscard]] std::span<const std::uint32_t> slots() const { return slots_; }

  private:
    static unsigned fingerprint(std::string_view key) {
        if (key.empty()) return 0;
        const auto at = [key](std::size_t i) { return static_cast<unsigned char>(key[i]); };
        return (key.size() * 31U + at(0) * 7U + at(key.size() / 2) * 5U + at(key.size() - 1)) % 64U;
    }

    const JSONMember* members_;
    std::span<std::uint32_t> slots_;
    std::uint64_t seen_ = 0;
};

/// Lays the parsed document out in memory of its own. Recursion is as deep as the parser lets documents be.
class TreeBuilder {
  public:
    explicit TreeBuilder(JSONDocument& document) : document_(document) {}

    JSONValue build(dom::element element) {
        // The type is known, so the unchecked results hold.
        switch (element.type()) {
            case dom::element_type::ARRAY:
                return JSONAccess::array(buildArray(element.get_array().value_unsafe()));
            case dom::element_type::OBJECT:
                return JSONAccess::dictionary(buildDictionary(element.get_object().value_unsafe()));
            case dom::element_type::STRING:
                return JSONAccess::textValue(document_.makeText(element.get_string().value_unsafe()));
            case dom::element_type::INT64:
                return element.get_int64().value_unsafe();
            case dom::element_type::UINT64:
                return element.get_uint64().value_unsafe();
            case dom::element_type::DOUBLE:
                return element.get_double().value_unsafe();
            case dom::element_type::BOOL:
                return element.get_bool().value_unsafe();
            case dom::element_type::NULL_VALUE:
                break;
        }
        return nullptr;
    }

  private:
    const JSONArrayBlock* buildArray(dom::array array) {
        const std::size_t count = countOf(array);
        if (count == 0) return nullptr;
        auto* const block = ::new (document_.allocate<JSONArrayBlock>(1)) JSONArrayBlock;
        auto* const elements = document_.allocate<JSONValue>(count);
        JSONValue* next = elements;
        for (const dom::element element : array)
            ::new (next++) JSONValue(build(element));
        block->owner = &document_;
        block->size = count;
        block->elements = elements;
        return block;
    }

    const JSONDictionaryBlock* buildDictionary(dom::object object) {
        const std::size_t capacity = countOf(object);
        if (capacity == 0) return nullptr;
        auto* const block = ::new (document_.allocate<JSONDictionaryBlock>(1)) JSONDictionaryBlock;
        auto* const members = document_.allocate<JSONMember>(capacity);
        MemberLookup lookup(document_, members, capacity);
        std::size_t count = 0;
        for (const auto& [key, element] : object) {
            const std::size_t position = lookup.findOrAdd(key, count);
            if (position == count) {
                ::new (&members[count++].key) JSONBlockReference(document_.makeText(key));
            }
            ::new (&members[position].value) JSONValue(build(element));
        }
        block->owner = &document_;
        block->size = count;
        block->members = members;
        block->slots = lookup.slots();
        return block;
    }

    JSONDocument& document_;
};

std::expected<JSONValue, JSONErrorCode> parse(std::string_view padded) {
    dom::parser& parser = threadParser();
    dom::element root;
    if (const auto error = parser.parse(padded.data(), padded.size(), false).get(root)) {
        return std::unexpected(jsonErrorCode(error));
    }
    // Blocks take two to four times the text they are read from; what is left over is never touched.
    auto document = std::make_unique<JSONDocument>(padded.size() * 3 + 64);
    JSONValue value = TreeBuilder(*document).build(root);
    if (JSONAccess::isCounted(value)) static_cast<void>(document.release());
    return value;
}

bool isDigit(char character) {
    return character >= '0' && character <= '9';
}

/// Whether `digits` (with its sign) is an integer that neither 64-bit type holds.
bool isTooLarge(std::string_view digits) {
    const auto overflows = [digits](auto integer) {
        const char* const end = digits.data() + digits.size();
        return std::from_chars(digits.data(), end, integer).ec == std::errc::result_out_of_range;
    };
    return digits.front() == '-' ? overflows(std::int64_t{}) : overflows(std::uint64_t{});
}

/// The input with an exponent of zero behind every integer that is too large for 64 bits, so that it is read
/// as a double; absent when there is none. Only looked for when the parser has refused a number.
std::optional<std::string> withLargeIntegersAsDoubles(std::string_view text) {
    std::string changed;
    std::size_t copied = 0;
    bool insideText = false;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (insideText) {
            if (text[i] == '\\')
                ++i;
            else
                insideText = text[i] != '"';
        } else if (text[i] == '"') {
            insideText = true;
        } else if (isDigit(text[i]) || text[i] == '-') {
            const std::size_t start = i++;
            while (i < text.size() && isDigit(text[i]))
                ++i;
            const bool integer = i == text.size() || (text[i] != '.' && text[i] != 'e' && text[i] != 'E');
            if (integer && isTooLarge(text.substr(start, i - start))) {
                changed.append(text, copied, i - copied).append("e0");
                copied = i;
            }
            // Behind a fraction's point or an exponent's sign nothing may be taken for an integer.
            while (i < text.size() && (isDigit(text[i]) || std::string_view(".eE+-").contains(text[i])))
                ++i;
            --i;
        }
    }
    if (copied == 0) return std::nullopt;
    changed.append(text, copied);
    return changed;
}

}  // namespace

std::expected<JSONValue, JSONErrorCode> readJSON(std::string_view padded) {
    constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
    if (padded.starts_with(byteOrderMark)) padded.remove_prefix(byteOrderMark.size());
    auto value = parse(padded);
    if (!value && value.error() == JSONErrorCode::invalidNumber) {
        if (const auto changed = withLargeIntegersAsDoubles(padded)) value = parse(Data(*changed).text());
    }
    if (padded.size() > keptCapacity) threadParser() = dom::parser();
    return value;
}

}  // namespace corvane::detail
