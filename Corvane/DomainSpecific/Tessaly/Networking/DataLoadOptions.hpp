#pragma once

#include <cstdint>

#include <Corvane/Export.hpp>

namespace corvane {

/// How the caller wants downloaded data to be treated: a set of bits that the download road only carries.
/// What a bit means is defined by the code that receives the data.
///
///     const auto options = DataLoadOptions::IgnoreCache | DataLoadOptions::TimeInUTC;
class CORVANE_EXPORT DataLoadOptions {
  public:
    /// An unsigned machine word.
    using RawValue = std::uintptr_t;

    /// The members. They are deliberately variables: an application may assign other bits to them before its
    /// first request. Assigning while another thread reads them is a data race.
    static DataLoadOptions IgnoreDates;
    static DataLoadOptions IgnoreCache;
    static DataLoadOptions TimeInUTC;

    constexpr DataLoadOptions() noexcept = default;

    constexpr explicit DataLoadOptions(RawValue rawValue) noexcept : rawValue_(rawValue) {}

    [[nodiscard]] constexpr RawValue rawValue() const noexcept { return rawValue_; }

    [[nodiscard]] constexpr bool isEmpty() const noexcept { return rawValue_ == 0; }

    /// Whether every bit of `other` is set here; true for the empty set.
    [[nodiscard]] constexpr bool contains(DataLoadOptions other) const noexcept { return intersection(other) == other; }

    /// Whether no bit is set on both sides.
    [[nodiscard]] constexpr bool isDisjoint(DataLoadOptions other) const noexcept {
        return intersection(other).isEmpty();
    }

    /// The underscore only keeps the name apart from the keyword.
    [[nodiscard]] constexpr DataLoadOptions union_(DataLoadOptions other) const noexcept {
        return DataLoadOptions(rawValue_ | other.rawValue_);
    }

    [[nodiscard]] constexpr DataLoadOptions intersection(DataLoadOptions other) const noexcept {
        return DataLoadOptions(rawValue_ & other.rawValue_);
    }

    [[nodiscard]] constexpr DataLoadOptions symmetricDifference(DataLoadOptions other) const noexcept {
        return DataLoadOptions(rawValue_ ^ other.rawValue_);
    }

    [[nodiscard]] constexpr DataLoadOptions subtracting(DataLoadOptions other) const noexcept {
        return DataLoadOptions(rawValue_ & ~other.rawValue_);
    }

    constexpr void insert(DataLoadOptions other) noexcept { rawValue_ |= other.rawValue_; }

    constexpr void remove(DataLoadOptions other) noexcept { rawValue_ &= ~other.rawValue_; }

    friend constexpr DataLoadOptions operator|(DataLoadOptions a, DataLoadOptions b) noexcept { return a.union_(b); }

    friend constexpr DataLoadOptions operator&(DataLoadOptions a, DataLoadOptions b) noexcept {
        return a.intersection(b);
    }

    friend constexpr bool operator==(DataLoadOptions, DataLoadOptions) noexcept = default;

  private:
    RawValue rawValue_ = 0;
};

}  // namespace corvane
