#include <algorithm>
#include <climits>
#include <cstdio>
#include <cstring>
#include <new>
#include <string>

#include <Corvane/Platform/HTTP/Private/Exchange.hpp>
#include <Corvane/Platform/HTTP/Private/HeaderRules.hpp>
#include <Corvane/Platform/HTTP/Private/RequestRules.hpp>
#include <Corvane/Platform/HTTP/Private/SystemAuthorities.hpp>
#include <Corvane/Platform/HTTP/Private/TransferFailure.hpp>

namespace corvane::http {

namespace {

/// Larger bodies are read as libcurl asks for them, which shows that they move; smaller ones leave in one go.
constexpr std::size_t largeBody = std::size_t{64} << 10U;

/// How much is read from a socket at once. A handle keeps this buffer; a larger one saves no time any more.
constexpr long receiveBuffer = 128L * 1024L;

/// How much of a redirect's body is worth reading to keep its connection.
constexpr std::size_t discardedAtMost = std::size_t{64} << 10U;

template <class Value>
void set(CURL* handle, CURLoption option, Value value) {
    // What can fail here is allocating a copy of a text; the transfer then fails for the lack of it.
    static_cast<void>(curl_easy_setopt(handle, option, value));
}

bool isOurs(std::string_view field) noexcept {
    return equalNames(field, "Content-Length") || equalNames(field, "Transfer-Encoding");
}

/// libcurl divides the time left to connect among a host's addresses. Its limit lies beyond our own, which
/// counts, but near enough that the second address has its turn.
long connectMilliseconds(double idleSeconds) noexcept {
    constexpr double least = 30'000;
    constexpr double most = INT_MAX;
    return static_cast<long>(std::clamp(idleSeconds * 1.5 * 1000, least, most));
}

}  // namespace

Exchange::Exchange(const URLSessionConfiguration& configuration, CURLSH* cookies)
    : configuration_(configuration), handle_(curl_easy_init()) {
    if (handle_ == nullptr) throw std::bad_alloc();
    setConstants(configuration, cookies);
}

Exchange::~Exchange() {
    curl_easy_cleanup(handle_);
    curl_slist_free_all(fields_);
}

void Exchange::setConstants(const URLSessionConfiguration& configuration, CURLSH* cookies) {
    set(handle_, CURLOPT_PRIVATE, static_cast<void*>(this));
    set(handle_, CURLOPT_ERRORBUFFER, detail_.data());
    set(handle_, CURLOPT_NOSIGNAL, 1L);
    set(handle_, CURLOPT_QUICK_EXIT, 1L);
    set(handle_, CURLOPT_PROTOCOLS_STR, "http,https");
    set(handle_, CURLOPT_FOLLOWLOCATION, 0L);
    set(handle_, CURLOPT_NETRC, static_cast<long>(CURL_NETRC_IGNORED));
    set(handle_, CURLOPT_ACCEPT_ENCODING, "");
    set(handle_, CURLOPT_USERAGENT, "Corvane/" CORVANE_VERSION);
    set(handle_, CURLOPT_BUFFERSIZE, receiveBuffer);
    set(handle_, CURLOPT_HTTP_VERSION, static_cast<long>(CURL_HTTP_VERSION_2TLS));
    set(handle_, CURLOPT_SUPPRESS_CONNECT_HEADERS, 1L);

    // Both always, or libcurl looks into the environment.
    set(handle_, CURLOPT_PROXY, configuration.proxy.value_or("").c_str());
    set(handle_, CURLOPT_NOPROXY, "");

    set(handle_, CURLOPT_SSLVERSION, static_cast<long>(CURL_SSLVERSION_TLSv1_2));
    const std::string authorities = configuration.caFile.value_or(systemAuthorities());
    set(handle_, CURLOPT_CAINFO, authorities.c_str());
    set(handle_, CURLOPT_CAPATH, static_cast<const char*>(nullptr));
    set(handle_, CURLOPT_PROXY_CAINFO, authorities.c_str());
    set(handle_, CURLOPT_PROXY_CAPATH, static_cast<const char*>(nullptr));

    if (cookies != nullptr) {
        set(handle_, CURLOPT_SHARE, cookies);
        // The empty name starts the cookie engine and reads no file.
        set(handle_, CURLOPT_COOKIEFILE, "");
    }

    set(handle_, CURLOPT_HEADERFUNCTION, &Exchange::onHeader);
    set(handle_, CURLOPT_HEADERDATA, static_cast<void*>(this));
    set(handle_, CURLOPT_WRITEFUNCTION, &Exchange::onBody);
    set(handle_, CURLOPT_WRITEDATA, static_cast<void*>(this));
    set(handle_, CURLOPT_READFUNCTION, &Exchange::onSend);
    set(handle_, CURLOPT_READDATA, static_cast<void*>(this));
    set(handle_, CURLOPT_SEEKFUNCTION, &Exchange::onSeek);
    set(handle_, CURLOPT_SEEKDATA, static_cast<void*>(this));
    set(handle_, CURLOPT_PREREQFUNCTION, &Exchange::onConnected);
    set(handle_, CURLOPT_PREREQDATA, static_cast<void*>(this));
}

bool Exchange::prepare(const URLRequest& request, const std::optional<Login>& login, double idleSeconds,
                       ExchangeObserver& observer) {
    clear();
    request_ = &request;
    observer_ = &observer;
    const URL& url = request.url();
    if (curl_easy_setopt(handle_, CURLOPT_URL, url.absoluteString().c_str()) != CURLE_OK) return false;
    // Waiting for a connection that may carry many streams pays; there is none over plain TCP.
    set(handle_, CURLOPT_PIPEWAIT, url.scheme() == "https" ? 1L : 0L);
    set(handle_, CURLOPT_CONNECTTIMEOUT_MS, connectMilliseconds(idleSeconds));
    set(handle_, CURLOPT_USERNAME, login ? login->credential.user.c_str() : nullptr);
    set(handle_, CURLOPT_PASSWORD, login ? login->credential.password.c_str() : nullptr);
    set(handle_, CURLOPT_HTTPAUTH, static_cast<long>(login && login->usesDigest ? CURLAUTH_DIGEST : CURLAUTH_BASIC));
    setMethod();
    return setFields();
}

void Exchange::setMethod() {
    const std::string& method = request_->httpMethod();
    set(handle_, CURLOPT_NOBODY, 0L);
    set(handle_, CURLOPT_CUSTOMREQUEST, static_cast<const char*>(nullptr));
    if (method == "HEAD") {
        set(handle_, CURLOPT_NOBODY, 1L);
        return;
    }
    const auto& body = request_->httpBody();
    const bool expectsBody = method == "POST" || method == "PUT" || method == "PATCH";
    if (!body && !expectsBody) {
        set(handle_, CURLOPT_HTTPGET, 1L);
        if (method != "GET") set(handle_, CURLOPT_CUSTOMREQUEST, method.c_str());
        return;
    }
    const std::size_t size = body ? body->size() : 0;
    const void* const bytes = size > 0 ? static_cast<const void*>(body->data()) : "";
    set(handle_, CURLOPT_POST, 1L);
    set(handle_, CURLOPT_POSTFIELDS, size > largeBody ? nullptr : bytes);
    set(handle_, CURLOPT_POSTFIELDSIZE_LARGE, static_cast<curl_off_t>(size));
    if (method != "POST") set(handle_, CURLOPT_CUSTOMREQUEST, method.c_str());
}

bool Exchange::addField(const HTTPHeaderField& field) {
    // A field without value is told from the wish to leave it out by its punctuation.
    const std::string line = field.value.empty() ? field.name + ";" : field.name + ": " + field.value;
    curl_slist* const longer = curl_slist_append(fields_, line.c_str());
    if (longer == nullptr) return false;
    fields_ = longer;
    return true;
}

bool Exchange::setFields() {
    for (const auto& field : request_->headerFields()) {
        if (!isOurs(field.name) && !addField(field)) return false;
    }
    // What libcurl would add to a request with a body, and nobody asked for.
    const bool hasBody = request_->httpMethod() != "GET" || request_->httpBody();
    if (hasBody) {
        for (const char* const name : {"Content-Type", "Expect"}) {
            if (request_->value(name)) continue;
            curl_slist* const longer = curl_slist_append(fields_, (std::string(name) + ":").c_str());
            if (longer == nullptr) return false;
            fields_ = longer;
        }
    }
    set(handle_, CURLOPT_HTTPHEADER, fields_);
    return true;
}

Exchange& Exchange::of(CURL* handle) noexcept {
    char* self = nullptr;
    curl_easy_getinfo(handle, CURLINFO_PRIVATE, &self);
    // NOLINTNEXTLINE(bugprone-casting-through-void): libcurl hands back what it was given, typed as text.
    return *static_cast<Exchange*>(static_cast<void*>(self));
}

std::optional<PlatformError> Exchange::failure(CURLcode code) const {
    if (refusal_) return makeURLError(*refusal_);
    if (code != CURLE_OK) {
        TransferFailure failure{.code = code, .hasHead = head_.isFinal(), .detail = detail_.data()};
        curl_easy_getinfo(handle_, CURLINFO_OS_ERRNO, &failure.systemError);
        curl_easy_getinfo(handle_, CURLINFO_SSL_VERIFYRESULT, &failure.verifyResult);
        return makeError(failure);
    }
    // libcurl takes a connection that ends inside the head for a response without body.
    if (!head_.isComplete()) return makeURLError(URLError::networkConnectionLost);
    if (!head_.isFinal()) return makeURLError(URLError::badServerResponse);
    return std::nullopt;
}

std::shared_ptr<const HTTPURLResponse> Exchange::takeResponse() {
    return head_.isFinal() ? head_.makeResponse(request_->url()) : nullptr;
}

void Exchange::clear() noexcept {
    set(handle_, CURLOPT_HTTPHEADER, static_cast<curl_slist*>(nullptr));
    curl_slist_free_all(fields_);
    fields_ = nullptr;
    request_ = nullptr;
    observer_ = nullptr;
    head_.reset();
    body_.clear();
    sent_ = 0;
    discarded_ = 0;
    isRedirected_ = false;
    refusal_.reset();
    detail_.front() = '\0';
}

bool Exchange::receiveHeader(std::string_view line) {
    observer_->bytesMoved();
    const bool wasComplete = head_.isComplete();
    if (!head_.append(line)) {
        refusal_ = URLError::cannotParseResponse;
        return false;
    }
    if (!head_.isComplete() || wasComplete) return true;
    if (head_.hasConflictingLengths()) {
        refusal_ = URLError::cannotParseResponse;
        return false;
    }
    isRedirected_ = http::isRedirect(head_.statusCode()) && head_.value("Location");
    // Of an exchange that libcurl repeats by itself, to log in.
    body_.clear();
    return true;
}

bool Exchange::receiveBody(std::string_view bytes) {
    observer_->bytesMoved();
    if (isRedirected_) {
        discarded_ += bytes.size();
        return discarded_ <= discardedAtMost;
    }
    const std::size_t maximum = configuration_.maximumResponseBytes;
    if (body_.size() == 0) {
        const std::size_t length = head_.contentLength().value_or(0);
        if (length > maximum) {
            refusal_ = URLError::dataLengthExceedsMaximum;
            return false;
        }
        if (!body_.reserve(std::max(length, bytes.size()))) return false;
    }
    if (bytes.size() > maximum - body_.size()) {
        refusal_ = URLError::dataLengthExceedsMaximum;
        return false;
    }
    return body_.append(bytes);
}

std::size_t Exchange::sendBody(char* to, std::size_t room) noexcept {
    observer_->bytesMoved();
    const auto bytes = request_->httpBody() ? request_->httpBody()->bytes() : std::span<const std::byte>();
    const std::size_t count = std::min(room, bytes.size() - sent_);
    if (count > 0) std::memcpy(to, bytes.data() + sent_, count);
    sent_ += count;
    return count;
}

std::size_t Exchange::onHeader(char* bytes, std::size_t size, std::size_t count, void* self) noexcept {
    const std::size_t length = size * count;
    return static_cast<Exchange*>(self)->receiveHeader({bytes, length}) ? length : 0;
}

std::size_t Exchange::onBody(char* bytes, std::size_t size, std::size_t count, void* self) noexcept {
    const std::size_t length = size * count;
    return static_cast<Exchange*>(self)->receiveBody({bytes, length}) ? length : 0;
}

std::size_t Exchange::onSend(char* bytes, std::size_t size, std::size_t count, void* self) noexcept {
    return static_cast<Exchange*>(self)->sendBody(bytes, size * count);
}

int Exchange::onSeek(void* self, curl_off_t offset, int origin) noexcept {
    auto& exchange = *static_cast<Exchange*>(self);
    const auto& body = exchange.request_->httpBody();
    const std::size_t size = body ? body->size() : 0;
    if (origin != SEEK_SET || offset < 0 || static_cast<std::size_t>(offset) > size) return CURL_SEEKFUNC_FAIL;
    exchange.sent_ = static_cast<std::size_t>(offset);
    return CURL_SEEKFUNC_OK;
}

int Exchange::onConnected(void* self, char* /*localAddress*/, char* /*remoteAddress*/, int /*localPort*/,
                          int /*remotePort*/) noexcept {
    static_cast<Exchange*>(self)->observer_->bytesMoved();
    return CURL_PREREQFUNC_OK;
}

}  // namespace corvane::http
