#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include <simdjson.h>

#include <Corvane/Platform/JSON/JSONSerialization.hpp>
#include <Corvane/Platform/JSON/JSONTokens.hpp>

namespace corvane::detail {

/// Finds where the tokens of a document begin: the first of the two stages in which simdjson parses, with the kernel
/// that suits the processor the program runs on. It checks that all is UTF-8 and that texts end and hold no control
/// character; the order of tokens, numbers, literals and escapes are left to who walks through them.
///
/// Lends itself the thread's parser, so that the next document needs no memory; a second one at a time gets its own.
class JSONStructure {
  public:
    JSONStructure();
    JSONStructure(const JSONStructure&) = delete;
    JSONStructure& operator=(const JSONStructure&) = delete;
    ~JSONStructure();

    /// Behind `padded` there must be `Data::padding` bytes that may be read.
    [[nodiscard]] std::optional<JSONErrorCode> index(std::string_view padded);

    /// The tokens of the text that was indexed last.
    [[nodiscard]] JSONTokens tokens() const noexcept {
        return {text_, parser_->structural_indexes.get(), parser_->n_structural_indexes};
    }

    /// The text whose content is `raw` without its escapes, written into `buffer`; absent when an escape is wrong.
    [[nodiscard]] std::optional<std::string_view> unescaped(std::string_view raw, std::string& buffer) const;

  private:
    std::string_view text_;
    std::unique_ptr<simdjson::internal::dom_parser_implementation> parser_;
};

}  // namespace corvane::detail
