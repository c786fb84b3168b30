#pragma once

#include <string>
#include <string_view>

namespace corvane {

/// The plain name, with parentheses, in a function's signature as GCC and Clang give it to
/// `std::source_location`: "load()" for "void app::Loader<T>::load(int) const [with T = int]".
///
/// What runs inside a lambda belongs to the function around it, so that function is named; a lambda outside
/// any function is "lambda()". A text that is no signature is given back as it stands.
[[nodiscard]] std::string plainFunctionName(std::string_view signature);

}  // namespace corvane
