#include <string_view>

#include <fmt/format.h>

#include <Corvane/DomainSpecific/Tessaly/Networking/Private/FailureText.hpp>
#include <Corvane/Networking/API/APIRepositoryError.hpp>

namespace corvane {

APIRepositoryError APIRepositoryError::from(const AnyError& error, const FetchResultMetadata& metadata) {
    if (const auto* decoding = error.as<DecodingError>()) return apiDecoding(*decoding, metadata);
    if (const auto* networking = error.as<CommonAPIError>()) return apiNetworking(*networking, metadata);
    if (const auto* client = error.as<ClientAPIError>()) return apiClient(*client, metadata);
    return generic(error, metadata);
}

std::string APIRepositoryError::errorDescription() const {
    return std::visit(CaseVisitor{
                          [](const DecodingError& error) { return debugDescription(error); },
                          [](const CommonAPIError& error) { return error.errorDescription(); },
                          [](const ClientAPIError& error) { return error.errorDescription(); },
                          [](const AnyError& error) { return error.localizedDescription(); },
                      },
                      error_);
}

std::string APIRepositoryError::description() const {
    const auto name = std::visit(CaseVisitor{
                                     [](const DecodingError&) { return "apiDecoding"; },
                                     [](const CommonAPIError&) { return "apiNetworking"; },
                                     [](const ClientAPIError&) { return "apiClient"; },
                                     [](const AnyError&) { return "generic"; },
                                 },
                                 error_);
    const auto text = std::visit([](const auto& error) { return std::string(error.description()); }, error_);
    return fmt::format("{}({}, {})", name, text, metadata_.debugDescription());
}

bool operator==(const APIRepositoryError& a, const APIRepositoryError& b) {
    if (a.metadata_ != b.metadata_ || a.error_.index() != b.error_.index()) return false;
    return std::visit(
        [&b]<class Error>(const Error& error) {
            const Error& other = *b.underlying<Error>();
            if constexpr (std::is_same_v<Error, AnyError>) {
                return error.code() == other.code() && error.domain() == other.domain();
            } else {
                return error == other;
            }
        },
        a.error_);
}

}  // namespace corvane
