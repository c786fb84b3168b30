#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <utility>
#include <variant>

#include <Corvane/Core/Hasher.hpp>
#include <Corvane/Export.hpp>

namespace corvane {

namespace commandIDCases {

struct CustomID {
    std::string name;

    friend bool operator==(const CustomID&, const CustomID&) = default;
};

struct HashID {
    std::int64_t hash;

    friend bool operator==(const HashID&, const HashID&) = default;
};

}  // namespace commandIDCases

/// What makes a command this command: the name it was given, or else a hash of the place where it was declared, which
/// is the same in every run of a program. A value.
class CORVANE_EXPORT CommandID {
  public:
    [[nodiscard]] static CommandID customID(std::string name) {
        return CommandID(commandIDCases::CustomID{std::move(name)});
    }

    [[nodiscard]] static CommandID hashID(std::int64_t hash) { return CommandID(commandIDCases::HashID{hash}); }

    [[nodiscard]] bool isCustomID() const noexcept { return std::holds_alternative<commandIDCases::CustomID>(case_); }

    [[nodiscard]] bool isHashID() const noexcept { return std::holds_alternative<commandIDCases::HashID>(case_); }

    /// `customID("reload")` or `hashID(-42)`.
    [[nodiscard]] std::string description() const;

    /// Feeds the number of the case, 0 for a name and 1 for a hash, and then the name, or the hash in decimal.
    void hash(Hasher& hasher) const;

    friend bool operator==(const CommandID&, const CommandID&) = default;

  private:
    using Case = std::variant<commandIDCases::CustomID, commandIDCases::HashID>;

    explicit CommandID(Case itsCase) noexcept : case_(std::move(itsCase)) {}

    Case case_;
};

}  // namespace corvane

template <>
struct std::hash<corvane::CommandID> {
    [[nodiscard]] std::size_t operator()(const corvane::CommandID& id) const {
        corvane::Hasher hasher(0);
        id.hash(hasher);
        return hasher.finalize();
    }
};
