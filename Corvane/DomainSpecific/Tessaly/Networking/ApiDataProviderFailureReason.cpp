#include <Corvane/DomainSpecific/Tessaly/Networking/ApiDataProviderFailureReason.hpp>
#include <Corvane/DomainSpecific/Tessaly/Networking/Private/FailureText.hpp>

namespace corvane {

std::string ApiDataProviderFailureReason::errorDescription() const {
    namespace cases = failureCases;
    using Text = std::string;
    return std::visit(
        CaseVisitor{
            [](const cases::InvalidResponse& failure) { return "Invalid response: " + failure.description; },
            [](cases::InvalidUrl) { return Text("Invalid URL"); },
            [](cases::InvalidJson) { return Text("Invalid JSON"); },
            [](cases::DecryptionError) { return Text("Decryption Error"); },
            [](cases::ParsingError) { return Text("Parsing Error"); },
            [](cases::Cancelled) { return Text("Cancelled"); },
            [](cases::Timeout) { return Text("Timeout"); },
            [](cases::Undefined) { return Text("Undefined"); },
        },
        case_);
}

std::string ApiDataProviderFailureReason::description() const {
    return caseDescription(case_);
}

}  // namespace corvane
