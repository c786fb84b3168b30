#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>

#include <Corvane/Concurrency/AutoRefreshablePage.hpp>
#include <Corvane/Platform/Dispatch/TaskHandle.hpp>

namespace matchday {

/// A page that loads itself when it is asked to refresh, one load at a time.
class Page final : public corvane::AutoRefreshablePage, public std::enable_shared_from_this<Page> {
  public:
    /// Absent when all went well, or else the failure to tell the user.
    using Failure = std::optional<std::string>;
    using Load = std::function<corvane::Task<Failure>()>;

    /// Both are called on the main thread; the page keeps `load` until its task has ended.
    Page(std::string title, Load load, std::function<void(Failure)> onLoaded)
        : title_(std::move(title)), load_(std::move(load)), onLoaded_(std::move(onLoaded)) {}

    [[nodiscard]] const std::string& title() const noexcept { return title_; }

    void refreshPage() override {
        if (!std::exchange(isLoading_, true)) corvane::spawn(corvane::onMain(refresh(shared_from_this())));
    }

  private:
    static corvane::Task<> refresh(std::shared_ptr<Page> self) {
        Failure failure = co_await self->load_();
        self->isLoading_ = false;
        self->onLoaded_(std::move(failure));
    }

    const std::string title_;
    const Load load_;
    const std::function<void(Failure)> onLoaded_;
    bool isLoading_ = false;
};

}  // namespace matchday
