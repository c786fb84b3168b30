#include <utility>

#include <Corvane/DomainSpecific/Tessaly/Networking/ApiRequest.hpp>
#include <Corvane/DomainSpecific/Tessaly/Networking/SimpleHttpRequest.hpp>

namespace corvane {

std::shared_ptr<const ApiRequest> ApiRequest::make(Fields fields) {
    return std::shared_ptr<const ApiRequest>(new ApiRequest(std::move(fields)));
}

ApiRequest::ApiRequest(Fields fields) noexcept : fields_(std::move(fields)) {}

ApiRequest::~ApiRequest() = default;

const std::shared_ptr<const SimpleHttpRequest>& ApiRequest::simpleHttpRequest() const {
    std::call_once(made_, [this] {
        simpleHttpRequest_ = SimpleHttpRequest::make({.ifModifiedSince = fields_.ifModifiedSince,
                                                      .isEphemeral = false,
                                                      .url = fields_.url,
                                                      .description = fields_.description,
                                                      .payload = fields_.payload});
    });
    return simpleHttpRequest_;
}

}  // namespace corvane
