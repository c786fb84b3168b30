#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include <Corvane/Platform/Dates/Private/DatePattern.hpp>
#include <Corvane/Platform/Dates/Private/LocaleSymbols.hpp>

namespace corvane {

/// Makes one `DatePattern` of a text and a locale's names, which have to outlive it.
class DatePatternCompiler {
  public:
    explicit DatePatternCompiler(const LocaleSymbols& symbols) noexcept : symbols_(symbols) {}

    /// What `DatePattern::compile` gives. Called once.
    [[nodiscard]] std::optional<DatePattern> compile(std::string_view pattern);

  private:
    using Field = DatePattern::Field;

    [[nodiscard]] bool addField(char letter, std::size_t width);
    void fuse();
    void addPiece(std::string_view text);
    void addLiteral(std::string_view text);
    [[nodiscard]] bool addNames(Field field, const LocaleSymbols::Names& names);

    const LocaleSymbols& symbols_;
    DatePattern compiled_;
};

}  // namespace corvane
