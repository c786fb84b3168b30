#pragma once

#include <concepts>
#include <functional>
#include <memory>
#include <utility>

#include <Corvane/Observation/LastChangeDebouncers.hpp>
#include <Corvane/Observation/ObservableCallbacks.hpp>
#include <Corvane/Observation/ObservableType.hpp>

namespace corvane {

/// A box with one value that tells its observers of every assignment.
///
///     Observable<int> score(0);
///     score.addObserver(shared_from_this(), {ObservableOption::initial, ObservableOption::changed},
///                       [this](int value, ObservableOption) { print(value); });
///     score.setValue(1);
///
/// It has reference semantics: a copy is another name of the same box, which lives as long as any of its names, and
/// whatever is done through one is seen through all.
///
/// An assignment stores the value and then makes three passes over its registrations, each in the order of their
/// making: all that react to `old`, with the value before; all that react to `new_`; and, unless the two values are
/// equal, all that react to `changed`. The callbacks run inside the assignment, on its thread, and must not throw.
/// During a pass they may
/// - add and remove observers: this changes the passes that follow, not the one that runs, which still calls what has
///   been removed;
/// - assign again: that makes its own three passes at once, and the pass outside then goes on with the value it began
///   with, so those behind in the order hear the newer value first;
/// - end the observable, with whatever owns it: the assignment makes all its passes as if it lived.
///
/// Observers are held weakly and only to find their registrations: those of an observer that has gone go on being
/// called, and nothing removes them any more. Callbacks are held strongly, until they are removed or the box ends.
///
/// No locks: one thread at a time for a box with all its names, in an application the main thread.
template <class T>
    requires std::equality_comparable<T> && std::copyable<T>
class Observable final : public ObservableType<T> {
  public:
    using typename ObservableType<T>::Closure;
    using ObservableType<T>::addObserver;

    explicit Observable(T value) : box_(new Box(std::move(value)), &Box::end) {}

    Observable(const Observable&) = default;
    /// A name stays with its box; assign its value instead.
    Observable& operator=(const Observable&) = delete;
    ~Observable() override = default;

    /// Valid while the box lives; its content changes with the next assignment.
    [[nodiscard]] const T& value() const noexcept { return box_->value; }

    void setValue(T value) {
        const typename Box::Use use(*box_);
        use.box.assign(std::move(value));
    }

    /// Calls `body` with a copy of the value to change in place, and assigns that: one assignment, at the end.
    template <std::invocable<T&> Body>
    void modify(Body&& body) {
        const typename Box::Use use(*box_);
        T value = use.box.value;
        std::forward<Body>(body)(value);
        use.box.assign(std::move(value));
    }

    void addObserver(const ObserverReference& observer, bool removeIfExists, ObservableOptions options,
                     Closure closure) override {
        const typename Box::Use use(*box_);
        if (removeIfExists) use.box.remove(observer);
        use.box.callbacks.add(observer, options, std::move(closure), use.box.value);
    }

    /// Also lets go of the debouncer that `addOnLastChangeObserver` keeps for `observer`; what waits there still fires.
    void removeObserver(const ObserverReference& observer) override {
        const typename Box::Use use(*box_);
        use.box.remove(observer);
    }

  private:
    struct Box {
        /// Keeps the box while it is in use, as a callback may end its last name. Not a hold as the names have it,
        /// whose count is atomic: assignments are many, and on one thread.
        struct Use {
            explicit Use(Box& itsBox) noexcept : box(itsBox) { ++box.uses; }

            ~Use() {
                if (--box.uses == 0 && box.isNameless) delete &box;
            }

            Use(const Use&) = delete;
            Use& operator=(const Use&) = delete;

            Box& box;
        };

        explicit Box(T initialValue) : value(std::move(initialValue)) {}

        /// When the last name has gone.
        static void end(Box* box) noexcept {
            box->isNameless = true;
            if (box->uses == 0) delete box;
        }

        void assign(T newValue) {
            if (callbacks.isEmpty()) {
                value = std::move(newValue);
                return;
            }
            const T oldValue = std::exchange(value, newValue);
            callbacks.notify(ObservableOption::old, oldValue);
            callbacks.notify(ObservableOption::new_, newValue);
            if (callbacks.mayReact(ObservableOption::changed) && !(newValue == oldValue)) {
                callbacks.notify(ObservableOption::changed, newValue);
            }
        }

        void remove(const ObserverReference& observer) {
            callbacks.remove(observer);
            detail::LastChangeDebouncers::shared().drop(observer);
        }

        T value;
        unsigned uses = 0;
        bool isNameless = false;
        detail::ObservableCallbacks<T, Closure> callbacks;
    };

    std::shared_ptr<Box> box_;
};

}  // namespace corvane
