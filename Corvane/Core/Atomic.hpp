#pragma once

#include <mutex>
#include <type_traits>
#include <utility>

#include <Corvane/Platform/UnfairLock.hpp>

namespace corvane {

/// A value behind a lock, for any thread. The lock is held for one copy, one assignment or one `mutate` body.
///
///     Atomic<int> hits(0);
///     hits.mutate([](int& value) { ++value; });  // counts every hit
///     ++hits;                                    // may lose hits: see `modify`
///
/// No order is defined between two of them. Not copyable: share it, or copy its value.
template <class T>
class Atomic {
  public:
    explicit Atomic(T wrappedValue) : value_(std::move(wrappedValue)) {}

    Atomic(const Atomic&) = delete;
    Atomic& operator=(const Atomic&) = delete;

    /// A copy of the value.
    [[nodiscard]] T wrappedValue() const {
        const std::lock_guard guard(lock_);
        return value_;
    }

    /// Replaces the value; the former one ends after the lock is released.
    void setWrappedValue(T value) {
        using std::swap;
        const std::lock_guard guard(lock_);
        swap(value_, value);
    }

    /// Calls `body` with the value in place and gives what it returns: the one atomic read-modify-write.
    /// `body` runs under the lock and must not touch this object again, which would deadlock.
    template <class Body>
        requires std::is_invocable_v<Body, T&>
    std::invoke_result_t<Body, T&> mutate(Body&& body) {
        static_assert(!std::is_reference_v<std::invoke_result_t<Body, T&>>, "nothing of the value leaves the lock");
        const std::lock_guard guard(lock_);
        return std::forward<Body>(body)(value_);
    }

    /// Lets `body` change a copy and stores that. Deliberately two locked sections, one to read and one to
    /// write: what another thread writes in between is lost. Use `mutate` where that matters. Gives the value
    /// stored.
    template <class Body>
        requires std::is_invocable_v<Body, T&>
    T modify(Body&& body) {
        T copy = wrappedValue();
        std::forward<Body>(body)(copy);
        setWrappedValue(copy);
        return copy;
    }

    /// Change in place, each as `modify` does it.
    template <class U>
        requires requires(T& value, const U& operand) { value += operand; }
    T operator+=(const U& operand) {
        return modify([&](T& value) { value += operand; });
    }

    template <class U>
        requires requires(T& value, const U& operand) { value -= operand; }
    T operator-=(const U& operand) {
        return modify([&](T& value) { value -= operand; });
    }

    T operator++()
        requires requires(T& value) { ++value; }
    {
        return modify([](T& value) { ++value; });
    }

    T operator--()
        requires requires(T& value) { --value; }
    {
        return modify([](T& value) { --value; });
    }

    /// This object, for those who hold the value through it and want `mutate`.
    [[nodiscard]] Atomic& projectedValue() noexcept { return *this; }

  private:
    mutable UnfairLock lock_;
    T value_;
};

}  // namespace corvane
