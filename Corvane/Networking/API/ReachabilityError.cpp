#include <fmt/format.h>

#include <Corvane/Networking/API/ReachabilityError.hpp>

namespace corvane {

std::string ReachabilityError::description() const {
    if (const auto* const failure = asFailedToCreateWithAddress()) {
        return fmt::format("failedToCreateWithAddress({}, {})", failure->address.description(), failure->code);
    }
    if (const auto* const failure = asFailedToCreateWithHostname()) {
        return fmt::format("failedToCreateWithHostname(\"{}\", {})", failure->hostname, failure->code);
    }
    if (isUnableToSetCallback()) return fmt::format("unableToSetCallback({})", code());
    if (isUnableToSetDispatchQueue()) return fmt::format("unableToSetDispatchQueue({})", code());
    return fmt::format("unableToGetFlags({})", code());
}

}  // namespace corvane
