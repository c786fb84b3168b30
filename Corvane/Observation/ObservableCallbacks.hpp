#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <memory>
#include <utility>
#include <vector>

#include <Corvane/Observation/ObservableOption.hpp>
#include <Corvane/Observation/ObserverReference.hpp>

namespace corvane::detail {

/// The registrations of one observable, in their order, and the passes that call them.
///
/// A pass calls those there were at its start, whatever is added or removed meanwhile. Nothing is copied for that:
/// callbacks lie in blocks that do not grow, so that they keep their places, and one that is removed during a pass
/// stays, marked with the last pass that calls it, until no pass runs. One thread at a time; whoever calls keeps this
/// alive until the call returns.
template <class T, class Closure>
class ObservableCallbacks {
  public:
    ObservableCallbacks() = default;
    ObservableCallbacks(const ObservableCallbacks&) = delete;
    ObservableCallbacks& operator=(const ObservableCallbacks&) = delete;

    [[nodiscard]] bool isEmpty() const noexcept { return count_ == 0; }

    /// Whether anybody may react to `option`.
    [[nodiscard]] bool mayReact(ObservableOption option) const noexcept { return options_.contains(option); }

    /// Adds a registration and calls it with `value` if it asks for that.
    void add(const ObserverReference& observer, ObservableOptions options, Closure closure, const T& value) {
        if (blocks_.empty() || blocks_.back().size() == blocks_.back().capacity()) {
            blocks_.emplace_back().reserve(std::max(count_, smallestBlock));
        }
        Callback& callback = blocks_.back().emplace_back(std::move(closure), options, always, observer.weak());
        ++count_;
        options_ = options_ | options;
        if (!options.contains(ObservableOption::initial)) return;
        const Pass pass(*this);
        callback.closure(T(value), ObservableOption::initial);
    }

    /// Removes the registrations of `observer`. Those of observers that have gone match no observer and stay.
    void remove(const ObserverReference& observer) {
        for (auto& block : blocks_) {
            for (Callback& callback : block) {
                if (callback.lastPass != always || !observer.isSame(callback.observer)) continue;
                callback.lastPass = passes_;
                hasRemoved_ = true;
            }
        }
        if (running_ == 0 && hasRemoved_) compact();
    }

    void notify(ObservableOption option, const T& value) {
        if (!options_.contains(option)) return;
        const Pass pass(*this);
        std::size_t left = count_;
        for (std::size_t index = 0; left != 0; ++index) {
            Callback* const block = blocks_[index].data();
            const std::size_t count = std::min(left, blocks_[index].size());
            for (Callback* callback = block; callback != block + count; ++callback) {
                if (callback->options.contains(option) && pass.number <= callback->lastPass) {
                    callback->closure(value, option);
                }
            }
            left -= count;
        }
    }

  private:
    static constexpr std::size_t smallestBlock = 4;
    static constexpr std::uint64_t always = std::numeric_limits<std::uint64_t>::max();

    struct Callback {
        Callback(Closure itsClosure, ObservableOptions itsOptions, std::uint64_t itsLastPass,
                 std::weak_ptr<const void> itsObserver) noexcept
            : closure(std::move(itsClosure)),
              options(itsOptions),
              lastPass(itsLastPass),
              observer(std::move(itsObserver)) {}

        Closure closure;
        ObservableOptions options;
        /// The number of the last pass that calls it.
        std::uint64_t lastPass;
        std::weak_ptr<const void> observer;
    };

    class Pass {
      public:
        explicit Pass(ObservableCallbacks& callbacks) noexcept : number(++callbacks.passes_), callbacks_(callbacks) {
            ++callbacks.running_;
        }

        ~Pass() {
            if (--callbacks_.running_ == 0 && callbacks_.hasRemoved_) callbacks_.compact();
        }

        Pass(const Pass&) = delete;
        Pass& operator=(const Pass&) = delete;

        const std::uint64_t number;

      private:
        ObservableCallbacks& callbacks_;
    };

    void compact() {
        // What was removed ends with this, when all is in order again: its end may lead back here.
        std::vector<std::vector<Callback>> former = std::exchange(blocks_, {});
        std::vector<Callback> kept;
        kept.reserve(count_);
        options_ = {};
        for (auto& block : former) {
            for (Callback& callback : block) {
                if (callback.lastPass != always) continue;
                options_ = options_ | callback.options;
                kept.push_back(std::move(callback));
            }
        }
        count_ = kept.size();
        hasRemoved_ = false;
        blocks_.push_back(std::move(kept));
    }

    std::vector<std::vector<Callback>> blocks_;
    std::size_t count_ = 0;
    /// Of all of them together.
    ObservableOptions options_ = {};
    /// Passes ever begun, and those that run now, one inside the other.
    std::uint64_t passes_ = 0;
    unsigned running_ = 0;
    bool hasRemoved_ = false;
};

}  // namespace corvane::detail
