#include <Corvane/DomainSpecific/Tessaly/Networking/ClientAPIError.hpp>
#include <Corvane/DomainSpecific/Tessaly/Networking/Private/FailureText.hpp>

namespace corvane {

std::string ClientAPIError::errorDescription() const {
    using namespace failureCases;
    return std::visit(CaseVisitor{
                          [](const InvalidResponse&) { return "Undefined"; },
                          [](InvalidUrl) { return "Invalid URL"; },
                          [](InvalidJson) { return "Invalid JSON"; },
                          [](DecryptionError) { return "Decryption error"; },
                          [](ParsingError) { return "Parsing error"; },
                          [](Cancelled) { return "Undefined"; },
                          [](Timeout) { return "Timeout"; },
                          [](Undefined) { return "Undefined"; },
                          [](EmptyData) { return "Empty data"; },
                      },
                      case_);
}

std::string ClientAPIError::description() const {
    return caseDescription(case_);
}

}  // namespace corvane
