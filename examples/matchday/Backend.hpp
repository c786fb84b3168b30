#pragma once

#include <mutex>
#include <string>
#include <string_view>

#include <Corvane/Testing/LoopbackServer.hpp>

#include "Season.hpp"

namespace matchday {

/// The league's back end on this machine: JSON documents with a "Last-Modified" that a client may ask back with, and
/// games that go on whenever somebody asks for the live scores.
class Backend {
  public:
    Backend();

    [[nodiscard]] std::string url(std::string_view path) const { return server_.url(path); }

  private:
    using Request = corvane::testing::LoopbackRequest;
    using Response = corvane::testing::LoopbackResponse;

    template <class Content>
    void serve(std::string path, Content content);
    Response live();
    Response details(const Request& request);
    Response prediction(const Request& request);
    Response visit(const Request& request);

    /// Guards what follows: routes run on the server's thread.
    std::mutex mutex_;
    Season season_;
    /// Whole seconds.
    corvane::Date lastModified_;
    int predictionCount_ = 0;
    /// Last, so that it has stopped serving before the rest goes.
    corvane::testing::LoopbackServer server_;
};

}  // namespace matchday
