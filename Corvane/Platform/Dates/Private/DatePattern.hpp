#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <Corvane/Platform/Dates/Private/CivilTime.hpp>
#include <Corvane/Platform/Dates/Private/LocaleSymbols.hpp>

namespace corvane {

class DateTextReader;

/// A pattern of date fields (UTS #35, part 4, section 8) compiled for a locale that writes Latin digits and Gregorian
/// dates. Immutable; any thread.
///
/// Fields: y, M, L, d, E, a, H, h, K, k, m, s and S, and text between them. Others are left to ICU.
class DatePattern {
  public:
    /// Absent when the pattern has a field, or a width of one, that is not covered, and when a quotation does not end.
    [[nodiscard]] static std::optional<DatePattern> compile(std::string_view pattern, const LocaleSymbols& symbols);

    /// An instant, or what the clock on the wall shows, counted from 1970.
    struct Moment {
        std::int64_t seconds;
        unsigned milliseconds;
    };

    /// An instant of the calendar, as exact as the pattern asks for.
    [[nodiscard]] Moment moment(double seconds) const noexcept {
        if (!hasFraction_) return {civil::floorSeconds(seconds), 0};
        // Multiplied first: the fraction alone would show the last digit one too low.
        const std::int64_t total = civil::floorSeconds(seconds * 1000);
        const std::int64_t whole = civil::floorDivide(total, 1000);
        return {whole, static_cast<unsigned>(total - whole * 1000)};
    }

    /// The text of what the clock on the wall shows.
    [[nodiscard]] std::string format(Moment local) const;

    /// What the clock on the wall showed. Whether the text is exactly one that the pattern describes; not an optional,
    /// which processors are slow to pass on.
    [[nodiscard]] bool parse(std::string_view text, Moment& local) const noexcept;

  private:
    friend class DatePatternCompiler;

    enum class Field : std::uint8_t {
        month,
        day,
        hour0To23,
        hour1To24,
        hour0To11,
        hour1To12,
        minute,
        second,
        year,
        fraction,
        /// yyyyMMdd and HHmmss.
        compactDate,
        compactTime,
        literal,
        monthName,
        weekdayName,
        dayPeriod,
    };

    struct Step {
        Field field;
        /// How many digits at least.
        std::uint8_t width;
        /// Which piece, or the first of a list of names.
        std::uint16_t piece;
    };

    /// A text within `texts_`.
    struct Piece {
        std::uint16_t place;
        std::uint16_t size;
    };

    struct Parsed;

    /// Pieces are copied by so many bytes, as copies of a fixed size are the fastest.
    static constexpr std::size_t block = 16;

    DatePattern() = default;

    [[nodiscard]] static std::size_t nameCount(Field field) noexcept;

    [[nodiscard]] std::string_view text(Piece piece) const noexcept {
        return {texts_.data() + piece.place, piece.size};
    }

    char* append(char* to, Piece piece) const noexcept;
    char* write(char* to, Moment local) const noexcept;
    unsigned readName(const Step& step, DateTextReader& reader) const noexcept;
    bool parseStep(const Step& step, DateTextReader& reader, Parsed& parsed) const noexcept;

    std::vector<Step> steps_;
    std::vector<Piece> pieces_;
    /// All pieces, and some bytes behind the last one, so that pieces can be copied in blocks.
    std::string texts_;
    /// How many bytes a text has at most, in years of four digits.
    std::size_t mostBytes_ = 0;
    std::size_t yearFields_ = 0;
    /// Other than of one byte.
    bool hasPieces_ = false;
    bool hasDate_ = false;
    bool hasFraction_ = false;
};

}  // namespace corvane
