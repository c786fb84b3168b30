#pragma once

namespace corvane {

/// What to do about a failed request.
enum class TYAutoRetryResult : unsigned char {
    retry,
    stop,
};

}  // namespace corvane
