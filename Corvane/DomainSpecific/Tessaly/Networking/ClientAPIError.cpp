#include <Corvane/DomainSpecific/Tessaly/Networking/ClientAPIError.hpp>
#include <Corvane/DomainSpecific/Tessaly/Networking/Private/FailureText.hpp>

namespace corvane {

std::string ClientAPIError::errorDescription() const {
    namespace cases = failureCases;
    return std::visit(CaseVisitor{
                          [](const cases::InvalidResponse&) { return "Undefined"; },
                          [](cases::InvalidUrl) { return "Invalid URL"; },
                          [](cases::InvalidJson) { return "Invalid JSON"; },
                          [](cases::DecryptionError) { return "Decryption error"; },
                          [](cases::ParsingError) { return "Parsing error"; },
                          [](cases::Cancelled) { return "Undefined"; },
                          [](cases::Timeout) { return "Timeout"; },
                          [](cases::Undefined) { return "Undefined"; },
                          [](cases::EmptyData) { return "Empty data"; },
                      },
                      case_);
}

std::string ClientAPIError::description() const {
    return caseDescription(case_);
}

}  // namespace corvane
