#include "DocumentReport.hpp"

#include <algorithm>
#include <chrono>
#include <utility>

#include <fmt/format.h>

#include <Corvane/Concurrency/ConvenientDispatch.hpp>
#include <Corvane/DomainSpecific/Tessaly/Networking/HTTPStatusCode.hpp>
#include <Corvane/Platform/JSON/JSONSerialization.hpp>

#include "Texts.hpp"

namespace matchday {
namespace {

using corvane::SimpleHttpRequest;
using corvane::SimpleHttpResponse;

constexpr int shownLines = 20;

/// What keeps an answer from being used, if anything does.
std::optional<std::string> failureText(const SimpleHttpResponse& response) {
    const auto& status = response.statusCode();
    const auto& error = response.error();
    if (!status) return error ? error->localizedDescription() : "there was no response";
    if (response.isNotModified()) return std::nullopt;
    if (!corvane::HTTPStatusCode::isSuccessful(*status)) return "the server answered " + statusText(*status);
    if (!response.data()) return "the document is empty";
    return std::nullopt;
}

}  // namespace

std::shared_ptr<DocumentReport> DocumentReport::make(Terminal& terminal,
                                                     std::shared_ptr<corvane::SimpleHttpManager> manager,
                                                     corvane::URL url, End onEnd) {
    return std::shared_ptr<DocumentReport>(
        new DocumentReport(terminal, std::move(manager), std::move(url), std::move(onEnd)));
}

DocumentReport::DocumentReport(Terminal& terminal, std::shared_ptr<corvane::SimpleHttpManager> manager,
                               corvane::URL url, End onEnd)
    : terminal_(terminal), manager_(std::move(manager)), url_(std::move(url)), onEnd_(std::move(onEnd)) {}

void DocumentReport::start() {
    ask(std::nullopt, &DocumentReport::showDocument);
}

void DocumentReport::ask(std::optional<std::string> ifModifiedSince, void (DocumentReport::*next)(const Answer&)) {
    const auto request = SimpleHttpRequest::make({.ifModifiedSince = std::move(ifModifiedSince), .url = url_});
    auto urlRequest = request->urlRequest();
    if (!urlRequest) return end(corvane::SimpleHttpResponse::Errors::invalidUrl().localizedDescription());
    const auto task = manager_->createTask(
        *std::move(urlRequest), request->isEphemeral(),
        [request, next, weak = weak_from_this(), start = std::chrono::steady_clock::now()](
            std::optional<corvane::Data> data, std::shared_ptr<const corvane::HTTPURLResponse> head,
            std::optional<corvane::PlatformError> error) {
            const std::chrono::duration<double, std::milli> elapsed = std::chrono::steady_clock::now() - start;
            SimpleHttpResponse response(request.get(), std::move(data), head, std::move(error));
            corvane::asyncOnMain([answer = Answer{std::move(response), std::move(head), elapsed.count()}, next, weak] {
                const auto self = weak.lock();
                if (self && self->onEnd_) ((*self).*next)(answer);
            });
        });
    task->setTaskDescription(url_.absoluteString());
    task->resume();
}

void DocumentReport::showDocument(const Answer& answer) {
    const auto& [response, head, milliseconds] = answer;
    if (head == nullptr || !response.statusCode()) return end(failureText(response));

    terminal_.line(terminal_.styled(Style::strong, printable(url_.absoluteString())));
    terminal_.line();
    if (head->url() != url_) field("Redirected to", head->url().absoluteString());
    field("Status", fmt::format("{}, {}", statusText(head->statusCode()), head->httpVersion()));
    field("Content-Type", head->value("Content-Type").value_or("not stated"));
    field("Last-Modified", response.lastModified().value_or("not stated"));
    const auto& body = response.data();
    const std::size_t size = body ? body->size() : 0;
    field("Size", size < 1024 ? sizeText(size) : fmt::format("{} ({} bytes)", sizeText(size), size));
    field("Time", durationText(milliseconds));
    terminal_.line();

    if (const auto reason = failureText(response)) return end(reason);
    if (!body) return end("the server claims that we have the document already");
    const auto json = corvane::JSONSerialization::jsonObject(*body);
    if (!json) return end("the document is not JSON: " + json.error().localizedDescription());
    const auto pretty = corvane::JSONSerialization::data(*json, {.prettyPrinted = true});
    if (!pretty) return end(pretty.error().localizedDescription());
    showHead(pretty->text());
    terminal_.line();

    if (response.lastModified()) return ask(response.lastModified(), &DocumentReport::showSecondAnswer);
    terminal_.line("Without a Last-Modified there is nothing to ask a second time with.");
    end();
}

void DocumentReport::showSecondAnswer(const Answer& answer) {
    const auto& [response, head, milliseconds] = answer;
    if (const auto reason = failureText(response)) return end("asked again: " + *reason);
    const std::string verdict = response.isNotModified() ? terminal_.styled(Style::good, "the copy is still good")
                                                         : "the server sent the whole document again";
    terminal_.line(fmt::format("Asked again with If-Modified-Since: {} in {}, {}.",
                               statusText(response.statusCode().value_or(0)), durationText(milliseconds), verdict));
    end();
}

void DocumentReport::end(std::optional<std::string> reason) {
    if (const End onEnd = std::exchange(onEnd_, nullptr)) onEnd(std::move(reason));
}

void DocumentReport::field(std::string_view name, std::string_view value) {
    terminal_.line("  " + terminal_.styled(Style::faint, fmt::format("{:<14}", name)) + " " + printable(value));
}

void DocumentReport::showHead(std::string_view prettyText) {
    int count = 0;
    while (!prettyText.empty()) {
        const std::size_t length = std::min(prettyText.find('\n'), prettyText.size());
        if (++count <= shownLines) {
            // A line may be as long as the document: look at no more of it than can be shown.
            const std::string_view start = prettyText.substr(0, std::min(length, 4 * terminal_.columns()));
            terminal_.line("  " + elided(printable(start), terminal_.columns() - 2));
        }
        prettyText.remove_prefix(std::min(length + 1, prettyText.size()));
    }
    if (count > shownLines) {
        terminal_.line(terminal_.styled(Style::faint, fmt::format("  … {} more lines", count - shownLines)));
    }
}

}  // namespace matchday
