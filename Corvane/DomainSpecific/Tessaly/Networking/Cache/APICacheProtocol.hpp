#pragma once

#include <optional>
#include <string>

#include <Corvane/Core/CustomTypes/TaggedType/SecondsSince1970Tag.hpp>
#include <Corvane/DomainSpecific/Tessaly/Networking/Cache/APIDataCache.hpp>
#include <Corvane/Export.hpp>
#include <Corvane/Platform/Data.hpp>
#include <Corvane/Platform/Dispatch/Task.hpp>

namespace corvane {

/// Where a typed remote API keeps the last good body of each resource. Shared; operations may be awaited from any
/// executor, side by side, and hold the cache until they have ended.
class CORVANE_EXPORT APICacheProtocol {
  public:
    virtual ~APICacheProtocol();
    APICacheProtocol(const APICacheProtocol&) = delete;
    APICacheProtocol& operator=(const APICacheProtocol&) = delete;

    /// Keeps a body with the server's marks on it under `key`, in place of an earlier one.
    [[nodiscard]] virtual Task<> set(Data data, std::optional<std::string> lastModified,
                                     SecondsSince1970 serverTimeStamp, std::string key) = 0;

    /// What is kept under `key`; nothing for an absent key.
    [[nodiscard]] virtual Task<std::optional<APIDataCache>> data(std::optional<std::string> key) = 0;

  protected:
    APICacheProtocol() = default;
};

}  // namespace corvane
