#pragma once

#include <string>
#include <typeinfo>

namespace corvane {

/// The type's qualified name as it is written in C++: "corvane::PlatformError".
[[nodiscard]] std::string typeName(const std::type_info& type);

}  // namespace corvane
