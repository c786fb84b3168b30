#pragma once

#include <Corvane/Export.hpp>
#include <Corvane/Platform/AnyError.hpp>
#include <Corvane/Platform/JSON/JSONValue.hpp>

namespace corvane {

class URLSessionDataTask;

/// Listens to the requests of `SimpleHttpManager::startBackgroundTask`. Called on the main thread.
class CORVANE_EXPORT BackgroundSessionDelegate {
  public:
    virtual ~BackgroundSessionDelegate();

    /// The body of `task` is the JSON object `json`.
    virtual void backgroundTaskDidLoad(URLSessionDataTask& task, const JSONDictionary& json) = 0;

    /// The transfer of `task` failed, or its body is not a JSON object (domain "Invalid response format", code 999999).
    virtual void backgroundTaskDidFail(URLSessionDataTask& task, const AnyError& error) = 0;

  protected:
    BackgroundSessionDelegate() = default;
    BackgroundSessionDelegate(const BackgroundSessionDelegate&) = default;
    BackgroundSessionDelegate& operator=(const BackgroundSessionDelegate&) = default;
};

}  // namespace corvane
