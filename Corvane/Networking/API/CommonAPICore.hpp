#pragma once

#include <expected>
#include <memory>
#include <optional>

#include <Corvane/Core/Atomic.hpp>
#include <Corvane/Core/CustomTypes/TaggedType/SecondsSince1970Tag.hpp>
#include <Corvane/DomainSpecific/Tessaly/Networking/Cache/APICacheProtocol.hpp>
#include <Corvane/DomainSpecific/Tessaly/Networking/Retry/APIAutoRetry.hpp>
#include <Corvane/Export.hpp>
#include <Corvane/Networking/API/APIRemoteProtocol.hpp>
#include <Corvane/Networking/API/CommonAPIError.hpp>
#include <Corvane/Platform/Data.hpp>
#include <Corvane/Platform/Dispatch/Task.hpp>
#include <Corvane/Platform/HTTP/URL.hpp>
#include <Corvane/Platform/JSON/DecodingError.hpp>
#include <Corvane/Platform/UniqueFunction.hpp>

namespace corvane::detail {

/// The part of a `CommonAPI` that does not know its model. Loads hold it, so that the API may go while they run.
class CORVANE_EXPORT CommonAPICore {
  public:
    /// Makes the model from a body and keeps it, or says why there is none.
    using Decode = UniqueFunction<std::optional<DecodingError>(const Data& body)>;

    CommonAPICore(std::shared_ptr<APIRemoteProtocol> apiRemote, std::shared_ptr<APICacheProtocol> apiCache,
                  std::shared_ptr<APIAutoRetry> autoRetry);

    [[nodiscard]] std::optional<URL> url() const { return url_.wrappedValue(); }

    void setURL(std::optional<URL> url) { url_.setWrappedValue(std::move(url)); }

    /// Gives the age of the model that `decode` has made last.
    [[nodiscard]] static Task<std::expected<SecondsSince1970, CommonAPIError>> load(std::shared_ptr<CommonAPICore> self,
                                                                                    Decode decode);

  private:
    using Outcome = std::expected<SecondsSince1970, CommonAPIError>;

    [[nodiscard]] Task<Outcome> loadOnce(Decode& decode);
    [[nodiscard]] Task<Outcome> accept(URLSessionAPIResponse response, Decode& decode);
    [[nodiscard]] Task<Outcome> answerFromCache(const URL& url, Decode& decode);

    Atomic<std::optional<URL>> url_;
    const std::shared_ptr<APIRemoteProtocol> apiRemote_;
    const std::shared_ptr<APICacheProtocol> apiCache_;
    const std::shared_ptr<APIAutoRetry> autoRetry_;
};

}  // namespace corvane::detail
