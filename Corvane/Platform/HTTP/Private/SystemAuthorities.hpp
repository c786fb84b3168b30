#pragma once

#include <string>

namespace corvane::http {

/// The PEM file of the certification authorities that this machine trusts, found where distributions keep it;
/// empty when there is none, so that every certificate is refused.
[[nodiscard]] const std::string& systemAuthorities();

}  // namespace corvane::http
