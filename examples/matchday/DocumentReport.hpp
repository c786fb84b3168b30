#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include <Corvane/DomainSpecific/Tessaly/Networking/SimpleHttpManager.hpp>
#include <Corvane/Platform/HTTP/HTTPURLResponse.hpp>
#include <Corvane/Platform/HTTP/URL.hpp>

#include "Terminal.hpp"

namespace matchday {

/// Downloads one JSON document, shows what came, and asks again with the validator it was given. Lives on the main
/// thread.
class DocumentReport : public std::enable_shared_from_this<DocumentReport> {
  public:
    /// `onEnd` is called once, with the failure to tell the user if there is one.
    using End = std::function<void(std::optional<std::string> failure)>;

    /// The terminal has to outlive the report.
    [[nodiscard]] static std::shared_ptr<DocumentReport> make(Terminal& terminal,
                                                              std::shared_ptr<corvane::SimpleHttpManager> manager,
                                                              corvane::URL url, End onEnd);

    void start();

  private:
    struct Answer {
        corvane::SimpleHttpResponse response;
        std::shared_ptr<const corvane::HTTPURLResponse> head;
        double milliseconds = 0;
    };

    DocumentReport(Terminal& terminal, std::shared_ptr<corvane::SimpleHttpManager> manager, corvane::URL url,
                   End onEnd);

    void ask(std::optional<std::string> ifModifiedSince, void (DocumentReport::*next)(const Answer&));
    void showDocument(const Answer& answer);
    void showSecondAnswer(const Answer& answer);
    void end(std::optional<std::string> failure = std::nullopt);

    void field(std::string_view name, std::string_view value);
    void showHead(std::string_view prettyText);

    Terminal& terminal_;
    std::shared_ptr<corvane::SimpleHttpManager> manager_;
    corvane::URL url_;
    End onEnd_;
};

}  // namespace matchday
