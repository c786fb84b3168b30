#include <utility>
#include <vector>

#include <Corvane/Platform/JSON/Private/JSONBlocks.hpp>
#include <Corvane/Platform/JSON/Private/JSONWriter.hpp>

namespace corvane {

namespace {

using Pair = std::pair<const JSONValue*, const JSONValue*>;

/// Compares one level and leaves what is inside to the caller's list: recursion would be as deep as the
/// values.
bool equalLevel(const JSONArray& a, const JSONArray& b, std::vector<Pair>& pending) {
    if (detail::JSONAccess::block(a) == detail::JSONAccess::block(b)) return true;
    if (a.size() != b.size()) return false;
    for (std::size_t i = 0; i < a.size(); ++i)
        pending.emplace_back(&a[i], &b[i]);
    return true;
}

bool equalLevel(const JSONDictionary& a, const JSONDictionary& b, std::vector<Pair>& pending) {
    if (detail::JSONAccess::block(a) == detail::JSONAccess::block(b)) return true;
    if (a.size() != b.size()) return false;
    for (const auto& [key, value] : a) {
        const JSONValue* const other = b.find(key);
        if (other == nullptr) return false;
        pending.emplace_back(&value, other);
    }
    return true;
}

}  // namespace

JSONValue::JSONValue(JSONNumber number) noexcept
    : value_(std::visit([](auto held) { return decltype(value_)(held); }, number.value_)) {}

detail::JSONBlockReference JSONValue::textBlock(std::string_view text) {
    return detail::JSONBlockReference(detail::makeHeapText(text));
}

JSONValue::Kind JSONValue::kind() const noexcept {
    if (isNull()) return Kind::null;
    if (std::holds_alternative<detail::JSONBlockReference>(value_)) return Kind::text;
    if (std::holds_alternative<JSONArray>(value_)) return Kind::array;
    return std::holds_alternative<JSONDictionary>(value_) ? Kind::dictionary : Kind::number;
}

std::optional<bool> JSONValue::asBool() const noexcept {
    const bool* const value = std::get_if<bool>(&value_);
    return value != nullptr ? std::optional(*value) : std::nullopt;
}

std::optional<JSONNumber> JSONValue::asNumber() const noexcept {
    return std::visit(
        [](const auto& value) -> std::optional<JSONNumber> {
            if constexpr (std::is_arithmetic_v<std::remove_cvref_t<decltype(value)>>) {
                return value;
            } else {
                return std::nullopt;
            }
        },
        value_);
}

std::optional<std::int64_t> JSONValue::asInt64() const noexcept {
    return asNumber().and_then([](const JSONNumber& number) { return number.exactInt64(); });
}

std::optional<std::uint64_t> JSONValue::asUInt64() const noexcept {
    return asNumber().and_then([](const JSONNumber& number) { return number.exactUInt64(); });
}

std::optional<double> JSONValue::asDouble() const noexcept {
    return asNumber().transform([](const JSONNumber& number) { return number.doubleValue(); });
}

std::optional<std::string_view> JSONValue::asString() const noexcept {
    const auto* const text = std::get_if<detail::JSONBlockReference>(&value_);
    return text != nullptr ? std::optional(detail::textOf(*text)) : std::nullopt;
}

const JSONValue* JSONValue::find(std::string_view key) const noexcept {
    const JSONDictionary* const dictionary = asDictionary();
    return dictionary != nullptr ? dictionary->find(key) : nullptr;
}

const JSONValue& JSONValue::operator[](std::string_view key) const noexcept {
    const JSONValue* const value = find(key);
    return value != nullptr ? *value : detail::nullJSONValue();
}

const JSONValue& JSONValue::element(std::size_t index) const noexcept {
    const JSONArray* const array = asArray();
    return array != nullptr ? (*array)[index] : detail::nullJSONValue();
}

bool JSONValue::operator==(const JSONValue& other) const {
    std::vector<Pair> pending;
    Pair pair{this, &other};
    while (true) {
        const auto& [a, b] = pair;
        if (a->kind() != b->kind()) return false;
        bool equal = true;
        switch (a->kind()) {
            case Kind::null:
                break;
            case Kind::number:
                equal = a->asNumber() == b->asNumber();
                break;
            case Kind::text:
                equal = a->asString() == b->asString();
                break;
            case Kind::array:
                equal = equalLevel(*a->asArray(), *b->asArray(), pending);
                break;
            case Kind::dictionary:
                equal = equalLevel(*a->asDictionary(), *b->asDictionary(), pending);
                break;
        }
        if (!equal) return false;
        if (pending.empty()) return true;
        pair = pending.back();
        pending.pop_back();
    }
}

std::string JSONValue::description() const {
    detail::JSONTextWriter writer(false);
    detail::JSONWriter(writer, false, detail::JSONWriter::Strictness::lenient).write(*this);
    return std::move(writer).text();
}

}  // namespace corvane
