#pragma once

#include <memory>
#include <string>

#include <Corvane/Export.hpp>
#include <Corvane/Platform/Network/NetworkPath.hpp>

namespace corvane {

/// Who makes the process's paths: the kernel's service, unless a test has put another in force
/// (`testing::ScriptedPath`). All operations may be called on any thread.
class CORVANE_EXPORT NetworkPathService {
  public:
    template <class T>
    using Result = NetworkPath::Result<T>;

    virtual ~NetworkPathService();
    NetworkPathService(const NetworkPathService&) = delete;
    NetworkPathService& operator=(const NetworkPathService&) = delete;

    /// The name is neither empty nor longer than 253 bytes and holds no zero byte.
    [[nodiscard]] virtual Result<std::shared_ptr<NetworkPath>> makePath(std::string hostName) = 0;
    [[nodiscard]] virtual Result<std::shared_ptr<NetworkPath>> makePath(const SocketAddress& address) = 0;

    /// The service in force.
    [[nodiscard]] static std::shared_ptr<NetworkPathService> current();

    /// Puts a service in force, or the kernel's when it is null. Paths made before stay what they are.
    static void setCurrent(std::shared_ptr<NetworkPathService> service);

  protected:
    NetworkPathService() = default;
};

}  // namespace corvane
