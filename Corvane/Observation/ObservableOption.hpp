#pragma once

#include <cstdint>
#include <initializer_list>

namespace corvane {

/// What an observer of an observable can be told of.
enum class ObservableOption : std::uint8_t {
    /// The registration itself, with the value there is then.
    initial,
    /// Every assignment, with the value before it.
    old,
    /// Every assignment, with the value it assigned, also when that equals the one before.
    new_,
    /// Every assignment of a value that does not equal the one before, with the value it assigned.
    changed,
};

/// What one registration reacts to: a list in which order and repetition mean nothing. An empty one reacts to nothing.
class ObservableOptions {
  public:
    constexpr ObservableOptions(ObservableOption option) noexcept  // NOLINT(google-explicit-constructor)
        : bits_(bit(option)) {}

    constexpr ObservableOptions(std::initializer_list<ObservableOption> options) noexcept {
        for (const ObservableOption option : options)
            bits_ |= bit(option);
    }

    [[nodiscard]] constexpr bool contains(ObservableOption option) const noexcept { return (bits_ & bit(option)) != 0; }

    /// What either of them contains.
    friend constexpr ObservableOptions operator|(ObservableOptions a, ObservableOptions b) noexcept {
        a.bits_ |= b.bits_;
        return a;
    }

    friend constexpr bool operator==(ObservableOptions, ObservableOptions) noexcept = default;

  private:
    static constexpr unsigned bit(ObservableOption option) noexcept { return 1U << static_cast<unsigned>(option); }

    unsigned bits_ = 0;
};

}  // namespace corvane
