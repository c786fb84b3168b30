#pragma once

namespace corvane {

/// The base of tags whose text values are keys of a cache: a text tagged with one is `CacheIdentifiable`. It has no
/// operations, and no values.
struct CacheIdentifiableTagType {
    CacheIdentifiableTagType() = delete;
};

}  // namespace corvane
