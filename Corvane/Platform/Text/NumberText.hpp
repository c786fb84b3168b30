#pragma once

#include <string>

#include <Corvane/Export.hpp>

namespace corvane {

/// The one text form of a double: the shortest digits that read back as the same value, always with a fraction
/// ("1.5", "1700000000.0", "-0.0"). From 1e-4 up to, not including, 1e16 there is never an exponent, outside of that
/// always ("1e+16", "1.5e-07"). Not a number is "nan", the infinities are "inf" and "-inf". No locale is looked at.
[[nodiscard]] CORVANE_EXPORT std::string numberText(double number);

}  // namespace corvane
