#include <algorithm>
#include <utility>

#include <Corvane/Platform/Data.hpp>
#include <Corvane/Platform/JSON/Private/JSONErrors.hpp>
#include <Corvane/Platform/JSON/Private/JSONStructure.hpp>

namespace corvane::detail {

namespace {

using Parser = simdjson::internal::dom_parser_implementation;

static_assert(Data::padding >= simdjson::SIMDJSON_PADDING);

/// A parser reserves four bytes for each byte of the largest input it has seen, and touches as many as there are
/// tokens. Every thread that decodes keeps its parser until it ends, but not one that has grown beyond this.
constexpr std::size_t keptCapacity = std::size_t{2} << 20;

std::unique_ptr<Parser>& threadParser() {
    thread_local std::unique_ptr<Parser> parser;
    return parser;
}

/// Later versions of simdjson ask whether half a surrogate pair is to be replaced; it is an error here.
template <class AnyParser>
std::uint8_t* unescape(const AnyParser& parser, const std::uint8_t* source, std::uint8_t* target) {
    if constexpr (requires { parser.parse_string(source, target, false); }) {
        return parser.parse_string(source, target, false);
    } else {
        return parser.parse_string(source, target);
    }
}

}  // namespace

JSONStructure::JSONStructure() : parser_(std::move(threadParser())) {}

JSONStructure::~JSONStructure() {
    if (parser_ != nullptr && parser_->capacity() <= keptCapacity) threadParser() = std::move(parser_);
}

std::optional<JSONErrorCode> JSONStructure::index(std::string_view padded) {
    if (padded.empty()) return JSONErrorCode::emptyInput;
    simdjson::error_code error = simdjson::SUCCESS;
    if (parser_ == nullptr || parser_->capacity() < padded.size()) {
        constexpr std::size_t smallest = 4096;
        // The parser's own second stage, which needs the depth, is never used.
        error = simdjson::get_active_implementation()->create_dom_parser_implementation(
            std::max(padded.size(), smallest), 1, parser_);
    }
    if (error == simdjson::SUCCESS) {
        error = parser_->stage1(reinterpret_cast<const std::uint8_t*>(padded.data()), padded.size(),
                                simdjson::stage1_mode::regular);
    }
    if (error != simdjson::SUCCESS) return jsonErrorCode(error);
    text_ = padded;
    // There is room behind the last offset, and the parser has it hold this in all of its versions so far.
    parser_->structural_indexes[parser_->n_structural_indexes] = static_cast<std::uint32_t>(padded.size());
    return std::nullopt;
}

std::optional<std::string_view> JSONStructure::unescaped(std::string_view raw, std::string& buffer) const {
    // No escape is shorter than what it stands for. The parser writes whole vectors.
    if (buffer.size() < raw.size() + simdjson::SIMDJSON_PADDING) {
        buffer.resize(raw.size() + simdjson::SIMDJSON_PADDING);
    }
    auto* const target = reinterpret_cast<std::uint8_t*>(buffer.data());
    const auto* const end = unescape(*parser_, reinterpret_cast<const std::uint8_t*>(raw.data()), target);
    if (end == nullptr) return std::nullopt;
    return std::string_view(buffer.data(), static_cast<std::size_t>(end - target));
}

}  // namespace corvane::detail
