#include <array>

#include <unicode/uloc.h>

#include <Corvane/Platform/Dates/Locale.hpp>

namespace corvane {

Locale::Locale(std::string_view identifier) {
    // What libc calls no locale at all. ICU knows that of the device's locale, not of others.
    if (identifier == "C" || identifier == "POSIX" || identifier.starts_with("C.")) identifier = "en_US_POSIX";
    std::array<char, ULOC_FULLNAME_CAPACITY> canonical{};
    UErrorCode status = U_ZERO_ERROR;
    const auto length = uloc_canonicalize(std::string(identifier).c_str(), canonical.data(),
                                          static_cast<std::int32_t>(canonical.size()), &status);
    // What does not fit is no locale's name.
    if (U_SUCCESS(status) && status != U_STRING_NOT_TERMINATED_WARNING)
        identifier_.assign(canonical.data(), static_cast<std::size_t>(length));
}

const Locale& Locale::current() {
    static const auto& locale = *new Locale(uloc_getDefault());
    return locale;
}

}  // namespace corvane
