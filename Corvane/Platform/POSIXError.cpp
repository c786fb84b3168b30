#include <cerrno>
#include <system_error>

#include <Corvane/Platform/Private/POSIXError.hpp>

namespace corvane {

PlatformError posixError(int code) {
    return {"POSIXErrorDomain", code, std::generic_category().message(code)};
}

PlatformError lastPOSIXError() {
    return posixError(errno);
}

}  // namespace corvane
