#include <fmt/format.h>

#include <Corvane/Networking/API/FetchResultMetadata.hpp>
#include <Corvane/Platform/Text/NumberText.hpp>

namespace corvane {

std::string FetchResultMetadata::debugDescription() const {
    // Deliberately inverted: a request penetrates the cache when the cache does not answer it.
    return fmt::format("didRequestCached: {}, didPenetrateCache: {}, created: {}", cachedDataRequested,
                       !cachedDataReturned,
                       cacheCreationTimestamp ? "Optional(" + numberText(*cacheCreationTimestamp) + ")" : "nil");
}

}  // namespace corvane
