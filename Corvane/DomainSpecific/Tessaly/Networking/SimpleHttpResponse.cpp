#include <Corvane/DomainSpecific/Tessaly/Networking/HTTPStatusCode.hpp>
#include <Corvane/DomainSpecific/Tessaly/Networking/SimpleHttpRequest.hpp>
#include <Corvane/DomainSpecific/Tessaly/Networking/SimpleHttpResponse.hpp>
#include <Corvane/Platform/HTTP/HTTPURLResponse.hpp>
#include <Corvane/Platform/PlatformError.hpp>

namespace corvane {

const AnyError& SimpleHttpResponse::Errors::invalidUrl() {
    static const auto* const error = new AnyError(PlatformError("Invalid URL", 999));
    return *error;
}

const AnyError& SimpleHttpResponse::Errors::emptyData() {
    static const auto* const error = new AnyError(PlatformError("Received empty data", 99999));
    return *error;
}

SimpleHttpResponse::SimpleHttpResponse(const SimpleHttpRequest* request, std::optional<Data> data,
                                       const std::shared_ptr<const HTTPURLResponse>& urlResponse,
                                       std::optional<AnyError> error)
    : data_(std::move(data)), error_(std::move(error)) {
    // The transport hands over an empty buffer for a response without content, which is what absent means
    // here.
    if (data_ && data_->empty()) data_.reset();
    if (error_) return;

    if (urlResponse) {
        statusCode_ = urlResponse->statusCode();
        isNotModified_ = statusCode_ == HTTPStatusCode(HTTPStatusCode::notModified).rawValue();
        if (request != nullptr) {
            if (const auto& url = request->url()) urlString_ = url->absoluteString();
        }
        if (const auto value = urlResponse->headerField(Headers::LastModified)) lastModified_ = *value;
    }
    if (!data_ && !isNotModified_) error_ = Errors::emptyData();
}

}  // namespace corvane
