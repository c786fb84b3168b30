#include <Corvane/DomainSpecific/Tessaly/Networking/ApiDataProviderFailureReason.hpp>
#include <Corvane/DomainSpecific/Tessaly/Networking/Private/FailureText.hpp>

namespace corvane {

std::string ApiDataProviderFailureReason::errorDescription() const {
    using namespace failureCases;
    using Text = std::string;
    return std::visit(CaseVisitor{
                          [](const InvalidResponse& failure) { return "Invalid response: " + failure.description; },
                          [](InvalidUrl) { return Text("Invalid URL"); },
                          [](InvalidJson) { return Text("Invalid JSON"); },
                          [](DecryptionError) { return Text("Decryption Error"); },
                          [](ParsingError) { return Text("Parsing Error"); },
                          [](Cancelled) { return Text("Cancelled"); },
                          [](Timeout) { return Text("Timeout"); },
                          [](Undefined) { return Text("Undefined"); },
                      },
                      case_);
}

std::string ApiDataProviderFailureReason::description() const {
    return caseDescription(case_);
}

}  // namespace corvane
