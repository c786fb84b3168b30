#include <utility>

#include <Corvane/Platform/Network/NetworkPathService.hpp>
#include <Corvane/Testing/Private/PathScript.hpp>
#include <Corvane/Testing/ScriptedPath.hpp>

namespace corvane::testing {

namespace {

class Path final : public NetworkPath {
  public:
    Path(std::shared_ptr<ScriptedPath::Script> script, std::string target)
        : script_(std::move(script)), target_(std::move(target)) {}

    ~Path() override { script_->pathEnded(this); }

    Result<void> setCallback(std::shared_ptr<NetworkPathCallback> callback) override {
        return script_->setCallback(this, std::move(callback));
    }

    Result<void> setDispatchQueue(std::shared_ptr<DispatchQueue> queue) override {
        return script_->setDispatchQueue(this, std::move(queue));
    }

    [[nodiscard]] Result<NetworkFlags> flags() override { return script_->flags(); }

    [[nodiscard]] std::string description() const override {
        const auto callback = script_->callback(this);
        return target_ + " (" + (callback ? callback->description() : "no callback") + ")";
    }

  private:
    const std::shared_ptr<ScriptedPath::Script> script_;
    const std::string target_;
};

class Service final : public NetworkPathService {
  public:
    explicit Service(std::shared_ptr<ScriptedPath::Script> script) noexcept : script_(std::move(script)) {}

    [[nodiscard]] Result<std::shared_ptr<NetworkPath>> makePath(std::string hostName) override {
        return make(ScriptedPath::Step::createWithHostName, std::move(hostName));
    }

    [[nodiscard]] Result<std::shared_ptr<NetworkPath>> makePath(const SocketAddress& address) override {
        return make(ScriptedPath::Step::createWithAddress, address.description());
    }

  private:
    [[nodiscard]] Result<std::shared_ptr<NetworkPath>> make(ScriptedPath::Step step, std::string target) {
        if (auto created = script_->create(step, target); !created) return std::unexpected(created.error());
        return std::make_shared<Path>(script_, std::move(target));
    }

    const std::shared_ptr<ScriptedPath::Script> script_;
};

}  // namespace

ScriptedPath::ScriptedPath(NetworkFlags flags)
    : script_(std::make_shared<Script>(flags)), former_(NetworkPathService::current()) {
    NetworkPathService::setCurrent(std::make_shared<Service>(script_));
}

ScriptedPath::~ScriptedPath() {
    NetworkPathService::setCurrent(former_);
}

void ScriptedPath::report(NetworkFlags flags) {
    script_->report(flags);
}

void ScriptedPath::setFlags(NetworkFlags flags) {
    script_->setFlags(flags);
}

void ScriptedPath::refuse(Step step, std::int32_t code) {
    script_->refuse(step, code);
}

void ScriptedPath::allow(Step step) {
    script_->allow(step);
}

void ScriptedPath::holdReports() {
    script_->setHolding(true);
}

void ScriptedPath::releaseReports() {
    script_->setHolding(false);
}

std::vector<std::string> ScriptedPath::targets() const {
    return script_->targets();
}

std::size_t ScriptedPath::installations() const {
    return script_->installations();
}

std::size_t ScriptedPath::watchedPaths() const {
    return script_->watchedPaths();
}

}  // namespace corvane::testing
