#pragma once

#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include <Corvane/Testing/LoopbackServer.hpp>

namespace corvane::testing {

/// The routes of a server. Thread-safe.
class LoopbackRoutes {
  public:
    void add(std::string method, std::string path, LoopbackServer::Handler handler);

    /// Asks the route for `request`; 404 or 405 without one, 500 when it throws.
    [[nodiscard]] LoopbackResponse answer(const LoopbackRequest& request) const;

  private:
    struct Route {
        std::string method;
        std::string path;
        std::shared_ptr<const LoopbackServer::Handler> handler;

        [[nodiscard]] bool coversPath(std::string_view requested) const noexcept;
        [[nodiscard]] bool coversMethod(std::string_view requested) const noexcept;
    };

    mutable std::mutex mutex_;
    std::vector<Route> routes_;
};

}  // namespace corvane::testing
