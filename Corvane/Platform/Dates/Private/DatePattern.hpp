#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <Corvane/Platform/Dates/Private/LocaleSymbols.hpp>

namespace corvane {

/// A pattern of date fields (UTS #35, part 4, section 8) compiled for a locale that writes Latin digits and Gregorian
/// dates. Immutable; any thread.
///
/// Fields: y, M, L, d, E, a, H, h, K, k, m, s and S, and text between them. Others are left to ICU.
class DatePattern {
  public:
    /// Absent when the pattern has a field, or a width of one, that is not covered, and when a quotation does not end.
    [[nodiscard]] static std::optional<DatePattern> compile(std::string_view pattern,
                                                            std::shared_ptr<const LocaleSymbols> symbols);

    /// An instant, or what the clock on the wall shows, counted from 1970.
    struct Moment {
        std::int64_t seconds;
        unsigned milliseconds;
    };

    /// An instant of the calendar, as exact as the pattern asks for.
    [[nodiscard]] Moment moment(double seconds) const noexcept;

    /// The text of what the clock on the wall shows.
    [[nodiscard]] std::string format(Moment local) const;

    /// What the clock on the wall showed. Absent when the text is not exactly one that the pattern describes.
    [[nodiscard]] std::optional<Moment> parse(std::string_view text) const noexcept;

  private:
    enum class Field : std::uint8_t {
        literal,
        year,
        month,
        day,
        hour0To23,
        hour1To24,
        hour0To11,
        hour1To12,
        minute,
        second,
        fraction,
        dayPeriod,
        monthName,
        weekdayName,
    };

    struct Step {
        Field field;
        /// Digits, or bytes of a literal.
        std::uint8_t width;
        /// Where a literal stands, and which list a name is from.
        std::uint16_t place;
    };

    struct Parsed;

    DatePattern() = default;

    [[nodiscard]] bool addField(char letter, std::size_t width);
    [[nodiscard]] bool addLiteral(std::string_view text);
    void addNames(Field field, const LocaleSymbols::Names& names);
    bool parseStep(const Step& step, std::string_view& rest, Parsed& parsed) const noexcept;

    std::vector<Step> steps_;
    std::string literals_;
    std::shared_ptr<const LocaleSymbols> symbols_;
    std::vector<const LocaleSymbols::Names*> names_;
    /// How many bytes a text has at most.
    std::size_t mostBytes_ = 0;
    bool hasDate_ = false;
    bool hasFraction_ = false;
};

}  // namespace corvane
