#include <cxxabi.h>

#include <cstdlib>
#include <memory>

#include <Corvane/Platform/Private/TypeName.hpp>

namespace corvane {

std::string typeName(const std::type_info& type) {
    int status = 0;
    const std::unique_ptr<char, decltype(&std::free)> name(abi::__cxa_demangle(type.name(), nullptr, nullptr, &status),
                                                           &std::free);
    return name ? name.get() : type.name();
}

}  // namespace corvane
