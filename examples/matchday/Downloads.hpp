#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include <Corvane/DomainSpecific/Tessaly/Networking/SimpleHttpManager.hpp>
#include <Corvane/Platform/JSON/JSONValue.hpp>

namespace matchday {

/// One answered request.
struct Download {
    std::string method;
    std::string path;
    bool isEphemeral = false;
    corvane::SimpleHttpResponse response;
    double milliseconds = 0;
};

/// "1.9 KiB"
[[nodiscard]] std::string sizeText(std::size_t bytes);

/// "2.1 ms"
[[nodiscard]] std::string durationText(double milliseconds);

/// "404 Not Found", "503 (server error)"
[[nodiscard]] std::string statusText(int status);

/// What keeps an answer from being used, if anything does.
[[nodiscard]] std::optional<std::string> failureText(const corvane::SimpleHttpResponse& response);

/// The requests to the league's back end. Answers come on the main thread.
class Downloads {
  public:
    using Done = std::function<void(const Download&)>;

    explicit Downloads(std::string base) : base_(std::move(base)) {}

    struct Options {
        std::optional<std::string> ifModifiedSince = {};
        bool isEphemeral = false;
    };

    void get(std::string path, Options options, Done done);
    void post(std::string path, const corvane::JSONDictionary& payload, Done done);

    [[nodiscard]] std::optional<corvane::URL> url(std::string_view path) const;

  private:
    void send(std::string path, corvane::SimpleHttpRequest::Fields fields, Done done);

    std::string base_;
};

}  // namespace matchday
