#pragma once

#include <string>
#include <variant>

#include <fmt/format.h>

#include <Corvane/DomainSpecific/Tessaly/Networking/FailureCases.hpp>

namespace corvane {

/// The name of the case, with its payload labelled in parentheses.
template <class... Cases>
std::string caseDescription(const std::variant<Cases...>& failure) {
    return std::visit(
        []<class Case>(const Case& value) {
            if constexpr (requires { value.description; }) {
                return fmt::format("{}(description: {:?})", Case::name, value.description);
            } else {
                return std::string(Case::name);
            }
        },
        failure);
}

/// One callable out of several, for `std::visit`.
template <class... Visitors>
struct CaseVisitor : Visitors... {
    using Visitors::operator()...;
};

}  // namespace corvane
