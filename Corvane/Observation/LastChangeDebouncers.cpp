#include <mutex>
#include <optional>
#include <utility>

#include <Corvane/Observation/LastChangeDebouncers.hpp>

namespace corvane::detail {

namespace {

constexpr double lastChangeDelay = 1.0;

}  // namespace

LastChangeDebouncers& LastChangeDebouncers::shared() {
    static auto& debouncers = *new LastChangeDebouncers;
    return debouncers;
}

void LastChangeDebouncers::debounce(const ObserverReference& observer, Closure closure) {
    debouncer(observer)->debounce([closure = std::move(closure)] {
        if (*closure) (*closure)();
    });
}

void LastChangeDebouncers::drop(const ObserverReference& observer) {
    // Ends after the lock has been released: a debouncer that ends writes to the log.
    std::unordered_map<std::string, Entry>::node_type dropped;
    const std::lock_guard lock(lock_);
    if (!entries_.empty()) dropped = entries_.extract(observer.key());
}

std::shared_ptr<PreConcurrencyEventDebouncer> LastChangeDebouncers::debouncer(const ObserverReference& observer) {
    std::shared_ptr<PreConcurrencyEventDebouncer> former;
    const std::lock_guard lock(lock_);
    Entry& entry = entries_[observer.key()];
    if (entry.debouncer == nullptr || !observer.isSame(entry.observer)) {
        former = std::exchange(entry.debouncer, PreConcurrencyEventDebouncer::make(std::nullopt, lastChangeDelay));
        entry.observer = observer.weak();
    }
    return entry.debouncer;
}

}  // namespace corvane::detail
