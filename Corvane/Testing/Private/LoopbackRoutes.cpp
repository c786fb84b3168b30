#include <exception>
#include <ranges>
#include <utility>

#include <Corvane/Testing/Private/LoopbackRoutes.hpp>

namespace corvane::testing {

bool LoopbackRoutes::Route::coversPath(std::string_view requested) const noexcept {
    if (!path.ends_with('*')) return path == requested;
    return requested.starts_with(std::string_view(path).substr(0, path.size() - 1));
}

bool LoopbackRoutes::Route::coversMethod(std::string_view requested) const noexcept {
    return method == requested || method == "*" || (method == "GET" && requested == "HEAD");
}

void LoopbackRoutes::add(std::string method, std::string path, LoopbackServer::Handler handler) {
    auto shared = std::make_shared<const LoopbackServer::Handler>(std::move(handler));
    const std::lock_guard lock(mutex_);
    routes_.push_back({std::move(method), std::move(path), std::move(shared)});
}

LoopbackResponse LoopbackRoutes::answer(const LoopbackRequest& request) const {
    std::shared_ptr<const LoopbackServer::Handler> handler;
    std::string otherMethods;
    {
        const std::lock_guard lock(mutex_);
        for (const Route& route : routes_ | std::views::reverse) {
            if (!route.coversPath(request.path())) continue;
            if (route.coversMethod(request.method)) {
                handler = route.handler;
                break;
            }
            if (!otherMethods.empty()) otherMethods += ", ";
            otherMethods += route.method;
        }
    }
    if (handler == nullptr) {
        if (otherMethods.empty()) return {.status = 404};
        return {.status = 405, .headers = {{"Allow", otherMethods}}};
    }
    try {
        return (*handler)(request);
    } catch (const std::exception& failure) {
        return {.status = 500, .body = failure.what()};
    } catch (...) {
        return {.status = 500};
    }
}

}  // namespace corvane::testing
