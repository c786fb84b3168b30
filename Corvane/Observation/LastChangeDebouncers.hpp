#pragma once

#include <functional>
#include <memory>
#include <string>
#include <unordered_map>

#include <Corvane/Concurrency/PreConcurrencyEventDebouncer.hpp>
#include <Corvane/Export.hpp>
#include <Corvane/Observation/ObserverReference.hpp>
#include <Corvane/Platform/UnfairLock.hpp>

namespace corvane::detail {

/// The process's debouncers of `addOnLastChangeObserver`, one for each observer by its key. One stays until its
/// observer is removed from any observable, or another object comes to live at the observer's address.
///
/// `drop` may be called on any thread, so that observables that live on another thread than the main one may have
/// observers removed; `debounce` is for the main thread, as the debouncers are.
class CORVANE_EXPORT LastChangeDebouncers {
  public:
    using Closure = std::shared_ptr<const std::function<void()>>;

    /// Made on first use, never destroyed.
    [[nodiscard]] static LastChangeDebouncers& shared();

    /// Has `closure` called once nothing has been debounced for `observer` during one second.
    void debounce(const ObserverReference& observer, Closure closure);

    void drop(const ObserverReference& observer);

  private:
    struct Entry {
        std::weak_ptr<const void> observer;
        std::shared_ptr<PreConcurrencyEventDebouncer> debouncer;
    };

    [[nodiscard]] std::shared_ptr<PreConcurrencyEventDebouncer> debouncer(const ObserverReference& observer);

    UnfairLock lock_;
    std::unordered_map<std::string, Entry> entries_;
};

}  // namespace corvane::detail
