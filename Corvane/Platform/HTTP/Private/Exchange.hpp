#pragma once

#include <array>
#include <cstddef>
#include <memory>
#include <optional>

#include <curl/curl.h>

#include <Corvane/Platform/Data.hpp>
#include <Corvane/Platform/HTTP/HTTPURLResponse.hpp>
#include <Corvane/Platform/HTTP/Private/BodyBuffer.hpp>
#include <Corvane/Platform/HTTP/Private/ResponseHead.hpp>
#include <Corvane/Platform/HTTP/URLError.hpp>
#include <Corvane/Platform/HTTP/URLRequest.hpp>
#include <Corvane/Platform/HTTP/URLSessionConfiguration.hpp>
#include <Corvane/Platform/HTTP/URLSessionDelegate.hpp>

namespace corvane::http {

/// Hears that bytes move, so that an idle timeout can start over.
class ExchangeObserver {
  public:
    virtual void bytesMoved() noexcept = 0;

  protected:
    ~ExchangeObserver() = default;
};

/// A credential and how to present it.
struct Login {
    URLCredential credential;
    bool usesDigest = false;
};

/// One request and its response on a libcurl handle. Used for one exchange after the other within its
/// session; only the network thread uses it.
class Exchange {
  public:
    /// `cookies` is the session's cookie share, or null.
    Exchange(const URLSessionConfiguration& configuration, CURLSH* cookies);
    Exchange(const Exchange&) = delete;
    Exchange& operator=(const Exchange&) = delete;
    ~Exchange();

    /// Sets the handle up to send `request`, false when there is no memory. Request and observer must stay
    /// until `clear`.
    bool prepare(const URLRequest& request, const std::optional<Login>& login, double idleSeconds,
                 ExchangeObserver& observer);

    [[nodiscard]] CURL* handle() const noexcept { return handle_; }

    /// The exchange that a libcurl handle belongs to.
    [[nodiscard]] static Exchange& of(CURL* handle) noexcept;

    [[nodiscard]] ExchangeObserver& observer() const noexcept { return *observer_; }

    [[nodiscard]] const URLRequest& request() const noexcept { return *request_; }

    [[nodiscard]] ResponseHead& head() noexcept { return head_; }

    /// Whether the response sends the client elsewhere. Such a response's body is thrown away.
    [[nodiscard]] bool isRedirected() const noexcept { return isRedirected_; }

    /// How the transfer ended, once libcurl has said so: nothing on success.
    [[nodiscard]] std::optional<PlatformError> failure(CURLcode code) const;

    /// The response's head, when it had arrived. Call it once.
    [[nodiscard]] std::shared_ptr<const HTTPURLResponse> takeResponse();

    [[nodiscard]] Data takeBody() { return body_.take(); }

    /// Lets go of everything that belongs to the request.
    void clear() noexcept;

  private:
    void setConstants(const URLSessionConfiguration& configuration, CURLSH* cookies);
    void setMethod();
    bool setFields();
    bool addField(const HTTPHeaderField& field);

    bool receiveHeader(std::string_view line);
    bool receiveBody(std::string_view bytes);
    std::size_t sendBody(char* to, std::size_t room) noexcept;

    static std::size_t onHeader(char* bytes, std::size_t size, std::size_t count, void* self) noexcept;
    static std::size_t onBody(char* bytes, std::size_t size, std::size_t count, void* self) noexcept;
    static std::size_t onSend(char* bytes, std::size_t size, std::size_t count, void* self) noexcept;
    static int onSeek(void* self, curl_off_t offset, int origin) noexcept;
    static int onConnected(void* self, char*, char*, int, int) noexcept;

    const URLSessionConfiguration& configuration_;
    CURL* handle_;
    curl_slist* fields_ = nullptr;
    const URLRequest* request_ = nullptr;
    ExchangeObserver* observer_ = nullptr;
    ResponseHead head_;
    BodyBuffer body_;
    std::size_t sent_ = 0;
    std::size_t discarded_ = 0;
    bool isRedirected_ = false;
    /// Why a callback told libcurl to stop.
    std::optional<URLError> refusal_;
    std::array<char, CURL_ERROR_SIZE> detail_{};
};

}  // namespace corvane::http
