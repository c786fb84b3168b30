#pragma once

#include <Corvane/Core/CustomTypes/TaggedType/CacheIdentifiableTagType.hpp>

// The tags of image names, in pairs: the name as it is shown or asked for, and the name that the file is cached under.
// Tags only tell types apart; there are no values of them.

namespace corvane {

struct CompetitionEmblemNameTag final {
    CompetitionEmblemNameTag() = delete;
};

struct CompetitionEmblemCacheNameTag final : CacheIdentifiableTagType {};

struct FlagNameTag final {
    FlagNameTag() = delete;
};

struct FlagCacheNameTag final : CacheIdentifiableTagType {};

struct ImageNameTag final {
    ImageNameTag() = delete;
};

struct ImageCacheNameTag final : CacheIdentifiableTagType {};

struct RegionFlagNameTag final {
    RegionFlagNameTag() = delete;
};

struct RegionFlagCacheNameTag final : CacheIdentifiableTagType {};

struct TeamBadgeNameTag final {
    TeamBadgeNameTag() = delete;
};

struct TeamBadgeCacheNameTag final : CacheIdentifiableTagType {};

struct TShirtImageNameTag final {
    TShirtImageNameTag() = delete;
};

struct TShirtImageCacheNameTag final : CacheIdentifiableTagType {};

struct PlayerHeadshotImageNameTag final {
    PlayerHeadshotImageNameTag() = delete;
};

struct PlayerHeadshotImageCacheNameTag final : CacheIdentifiableTagType {};

/// Tags the addresses of images.
struct ImageURLTag final {
    ImageURLTag() = delete;
};

}  // namespace corvane
