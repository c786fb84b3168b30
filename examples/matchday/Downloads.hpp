#pragma once

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include <Corvane/DomainSpecific/Tessaly/Networking/RequestManager/RequestManager.hpp>
#include <Corvane/Platform/Dispatch/Task.hpp>
#include <Corvane/Platform/JSON/JSONDictionary.hpp>

#include "FailureLog.hpp"

namespace matchday {

/// One answered load.
struct Download {
    std::string method = {};
    std::string path;
    corvane::RequestManagerResult result;
    double milliseconds = 0;
    /// Whether a 304 was answered with the copy in the cache.
    bool isKeptCopy = false;

    [[nodiscard]] const corvane::JSONDictionary* json() const noexcept;

    [[nodiscard]] std::optional<std::string> lastModified() const;
};

/// The loads of JSON objects from the league's back end, on both roads. Main thread only.
class Downloads : public std::enable_shared_from_this<Downloads> {
  public:
    using Done = std::function<void(const Download&)>;

    struct Options {
        /// Who asks: a newer load replaces one that is under way for the same context. The path where it is empty.
        std::string context = {};
        bool usesCache = true;
        std::optional<std::string> ifModifiedSince = {};
        std::optional<corvane::JSONDictionary> payload = {};
    };

    /// `onReplaced` gets the path of a load that another one replaces.
    [[nodiscard]] static std::shared_ptr<Downloads> make(std::string base,
                                                         std::function<void(const std::string& path)> onReplaced) {
        return std::shared_ptr<Downloads>(new Downloads(std::move(base), std::move(onReplaced)));
    }

    /// `done` is called on the main thread, and not at all when the load is replaced.
    void load(std::string path, Options options, Done done);

    /// The same to be awaited, for contexts with one load at a time: nobody goes on after a replaced one.
    [[nodiscard]] corvane::Task<Download> load(std::string path, Options options);

    [[nodiscard]] const FailureLog& failures() const noexcept { return *failures_; }

  private:
    Downloads(std::string base, std::function<void(const std::string& path)> onReplaced)
        : base_(std::move(base)), onReplaced_(std::move(onReplaced)) {}

    std::string base_;
    std::function<void(const std::string&)> onReplaced_;
    std::shared_ptr<FailureLog> failures_ = std::make_shared<FailureLog>();
    std::shared_ptr<corvane::RequestManager> manager_ =
        corvane::RequestManager::make(corvane::ApiDataProvider::make(), failures_);
    /// The newest load under way of each context.
    std::map<std::string, std::shared_ptr<const std::string>> pending_;
};

}  // namespace matchday
