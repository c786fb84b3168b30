#pragma once

#include <utility>

#include <Corvane/Observation/ObservableOption.hpp>
#include <Corvane/Observation/ObserverReference.hpp>
#include <Corvane/Platform/UniqueFunction.hpp>

namespace corvane {

/// Reserved for constants of `ObservableType`; there are none yet.
struct ObservableTypeConstants {
    ObservableTypeConstants() = delete;
};

/// Something with a value of type `T` whose assignments can be observed. `Observable` is the one to use; this is the
/// seam for others.
template <class T>
class ObservableType {
  public:
    using ValueType = T;

    /// Gets the value and what it is told of. Kept and called in place: up to 24 bytes without an allocation of its
    /// own.
    using Closure = UniqueFunction<void(const T& value, ObservableOption option), 24>;

    virtual ~ObservableType() = default;

    /// Registers `closure` for `observer`, which is held weakly, in place of all its registrations when
    /// `removeIfExists` is true. With the option `initial` the closure is called before this returns.
    virtual void addObserver(const ObserverReference& observer, bool removeIfExists, ObservableOptions options,
                             Closure closure) = 0;

    void addObserver(const ObserverReference& observer, ObservableOptions options, Closure closure) {
        addObserver(observer, true, options, std::move(closure));
    }

    void addObserver(const ObserverReference& observer, bool removeIfExists, Closure closure) {
        addObserver(observer, removeIfExists, ObservableOption::new_, std::move(closure));
    }

    void addObserver(const ObserverReference& observer, Closure closure) {
        addObserver(observer, true, ObservableOption::new_, std::move(closure));
    }

    /// Removes all registrations of `observer`.
    virtual void removeObserver(const ObserverReference& observer) = 0;

  protected:
    ObservableType() = default;
    ObservableType(const ObservableType&) = default;
    ObservableType& operator=(const ObservableType&) = default;
};

}  // namespace corvane
