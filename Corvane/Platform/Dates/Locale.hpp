#pragma once

#include <string>
#include <string_view>

#include <Corvane/Export.hpp>

namespace corvane {

/// Names a language and a region whose customs texts follow, as "en_US" or "sr_Latn_RS". What a locale does not know
/// of itself it takes from its language, and a locale that nobody knows from no language at all. A value; any thread.
class CORVANE_EXPORT Locale {
  public:
    /// Takes the identifier with underscores (UTS #35), with hyphens (BCP 47), or as libc has it ("de_DE.UTF-8", "C").
    explicit Locale(std::string_view identifier);

    /// The device's locale, which is libc's for messages, or that of LC_ALL, LC_MESSAGES and LANG where the application
    /// has not set libc's. Looked up once.
    [[nodiscard]] static const Locale& current();

    /// In canonical form: language, script, region and variant between underscores. "C" is "en_US_POSIX".
    [[nodiscard]] const std::string& identifier() const noexcept { return identifier_; }

    [[nodiscard]] bool operator==(const Locale&) const noexcept = default;

  private:
    std::string identifier_;
};

}  // namespace corvane
