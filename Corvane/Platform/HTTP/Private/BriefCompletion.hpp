#pragma once

#include <Corvane/Export.hpp>
#include <Corvane/Platform/HTTP/URLSessionDataTask.hpp>

namespace corvane::http {

/// Says of a task that has not been resumed that its completion handler is brief: it is short, waits for nothing, calls
/// nothing of the user's and hands what it gets on. The network thread then runs it itself, on the session's queue as
/// ever, when that queue has nothing else to do.
CORVANE_EXPORT void completeInPlace(URLSessionDataTask& task) noexcept;

}  // namespace corvane::http
