#pragma once

#include <any>
#include <functional>
#include <memory>
#include <utility>
#include <vector>

#include <Corvane/Observation/KeyPath.hpp>
#include <Corvane/Observation/KeyPathBatchObservableOptions.hpp>
#include <Corvane/Observation/ObserverReference.hpp>

namespace corvane {

/// Lets one callback observe several observable properties of an object:
///
///     class Match : public KeyPathBatchObservable<Match> {
///       public:
///         Observable<int> score{0};
///         Observable<std::string> title{""};
///     };
///
///     using Options = KeyPathBatchObservableOptions;
///     match.addObserver(page,
///                       {{&Match::score, Options::options(ObservableOption::changed)},
///                        {&Match::title, Options::options({ObservableOption::initial, ObservableOption::new_})}},
///                       [=](const std::any&) { page->redraw(); });
///
/// A property that is no observable is skipped silently. Threads, lifetimes and what a callback may do are those of
/// `Observable`, with one exception: a callback that runs within `addObserver`, for the option `initial`, must not end
/// the object.
template <class Self>
class KeyPathBatchObservable {
  public:
    /// Which properties, and how. They are registered in the order of the list.
    using KeyPathOptions = std::vector<std::pair<KeyPath<Self>, KeyPathBatchObservableOptions>>;

    /// Gets a copy of the value of whichever property it is, as exactly the type that the observable holds; which
    /// property and which event it was is not told. Must not be empty.
    using Callback = std::function<void(const std::any& value)>;

    void addObserver(const ObserverReference& observer, const KeyPathOptions& keyPaths, Callback callback) {
        const auto shared = std::make_shared<const Callback>(std::move(callback));
        for (const auto& [keyPath, options] : keyPaths)
            keyPath.addObserver(self(), observer, options, shared);
    }

    /// Removes all registrations of `observer` on these properties, in the order of the list.
    void removeObserver(const ObserverReference& observer, const std::vector<KeyPath<Self>>& keyPaths) {
        for (const KeyPath<Self>& keyPath : keyPaths)
            keyPath.removeObserver(self(), observer);
    }

    template <ObservableProperty Property, class Owner>
    void removeObserver(const ObserverReference& observer, Property Owner::* keyPath) {
        (self().*keyPath).removeObserver(observer);
    }

  protected:
    ~KeyPathBatchObservable() = default;

  private:
    /// Of `Self` alone may it be a base.
    friend Self;

    KeyPathBatchObservable() = default;
    KeyPathBatchObservable(const KeyPathBatchObservable&) = default;
    KeyPathBatchObservable& operator=(const KeyPathBatchObservable&) = default;

    [[nodiscard]] Self& self() noexcept { return static_cast<Self&>(*this); }
};

}  // namespace corvane
