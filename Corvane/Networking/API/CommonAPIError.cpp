#include <fmt/format.h>

#include <Corvane/DomainSpecific/Tessaly/Networking/Private/FailureText.hpp>
#include <Corvane/Networking/API/CommonAPIError.hpp>

namespace corvane {

std::string CommonAPIError::errorDescription() const {
    using Text = std::string;
    return std::visit(
        CaseVisitor{
            [](ClientFault fault) { return fmt::format("Client fault ({})", fault.code); },
            [](ServerFault fault) { return fmt::format("Server fault ({})", fault.code); },
            [](const FromClient& failure) { return "Client API Error: " + failure.error.description(); },
            // The parenthesis deliberately stays open.
            [](const FromDecoding& failure) { return "Decoding Error: (" + debugDescription(failure.error); },
            [](const FromURLSession& failure) { return "URL Session Error: " + failure.error.description(); },
            [](InvalidURL) { return Text("Invalid URL"); },
            [](InvalidResponse) { return Text("Invalid response"); },
            [](NotModified) { return Text("Data not modified"); },
            [](Redirection) { return Text("Redirection"); },
        },
        case_);
}

std::string CommonAPIError::description() const {
    using Text = std::string;
    return std::visit(
        CaseVisitor{
            [](ClientFault fault) { return fmt::format("clientFault({})", fault.code); },
            [](ServerFault fault) { return fmt::format("serverFault({})", fault.code); },
            [](const FromClient& failure) { return fmt::format("clientAPIError({})", failure.error.description()); },
            [](const FromDecoding& failure) {
                return fmt::format("decodingError({})", debugDescription(failure.error));
            },
            [](const FromURLSession& failure) {
                return fmt::format("urlSessionError({})", failure.error.description());
            },
            [](InvalidURL) { return Text("invalidURL"); },
            [](InvalidResponse) { return Text("invalidResponse"); },
            [](NotModified) { return Text("notModified"); },
            [](Redirection) { return Text("redirection"); },
        },
        case_);
}

}  // namespace corvane
