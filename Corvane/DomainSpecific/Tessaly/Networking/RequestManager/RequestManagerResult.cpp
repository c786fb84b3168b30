#include <fmt/format.h>

#include <Corvane/DomainSpecific/Tessaly/Networking/RequestManager/RequestManagerResult.hpp>

namespace corvane {

std::string RequestManagerResult::description() const {
    if (const auto* const success = asSuccess()) {
        return fmt::format("success({}, lastModified: {})", JSONValue(success->json).description(),
                           success->lastModified.value_or("nil"));
    }
    if (const auto* const failure = asFailure()) return fmt::format("failure({})", failure->reason.description());
    return "notModified";
}

}  // namespace corvane
