#pragma once

#include <cstddef>
#include <cstring>
#include <memory>
#include <new>
#include <type_traits>
#include <utility>

namespace corvane {

template <class Signature, std::size_t InlineBytes = 48>
class UniqueFunction;

/// A move-only callable that keeps targets of up to `InlineBytes` bytes inside itself and larger ones on the
/// heap.
///
/// Calling an empty one is undefined; test it with `operator bool` first. One made from a callable that is empty
/// itself is empty. Not thread-safe: like any value, one thread at a time. It lives on hot paths (every block of every
/// queue is one), so moving a trivially copyable target is a plain copy of bytes and there is exactly one indirect call
/// per invocation.
template <class R, class... Args, std::size_t InlineBytes>
class UniqueFunction<R(Args...), InlineBytes> {
  public:
    UniqueFunction() noexcept = default;

    UniqueFunction(std::nullptr_t) noexcept {}  // NOLINT(google-explicit-constructor)

    template <class F>
        requires(!std::is_same_v<std::remove_cvref_t<F>, UniqueFunction> &&
                 std::is_invocable_r_v<R, std::decay_t<F>&, Args...>)
    UniqueFunction(F&& target) {  // NOLINT(google-explicit-constructor)
        using Target = std::decay_t<F>;
        if constexpr (canBeEmpty<Target>) {
            if (!target) return;
        }
        if constexpr (sizeof(Target) <= InlineBytes && alignof(Target) <= alignof(void*) &&
                      std::is_nothrow_move_constructible_v<Target>) {
            ::new (static_cast<void*>(storage_)) Target(std::forward<F>(target));
            operations_ = &inlineOperations<Target>;
        } else {
            ::new (static_cast<void*>(storage_)) Target*(new Target(std::forward<F>(target)));
            operations_ = &heapOperations<Target>;
        }
    }

    UniqueFunction(UniqueFunction&& other) noexcept { take(other); }

    UniqueFunction& operator=(UniqueFunction&& other) noexcept {
        if (this != &other) {
            reset();
            take(other);
        }
        return *this;
    }

    UniqueFunction(const UniqueFunction&) = delete;
    UniqueFunction& operator=(const UniqueFunction&) = delete;

    ~UniqueFunction() { reset(); }

    explicit operator bool() const noexcept { return operations_ != nullptr; }

    // NOLINTNEXTLINE(performance-unnecessary-value-param): the signature says which are values.
    R operator()(Args... args) { return operations_->call(storage_, std::forward<Args>(args)...); }

  private:
    /// A function pointer, `std::function` and the like: not a lambda, which turns into a `bool` by way of a pointer.
    template <class Target>
    static constexpr bool canBeEmpty = std::is_pointer_v<Target> || (std::is_constructible_v<bool, const Target&> &&
                                                                     !std::is_convertible_v<const Target&, bool>);

    struct Operations {
        R (*call)(void* storage, Args&&... args);
        /// Moves the target from `from` to `to` and ends the one at `from`; with a null `to` it only ends it.
        /// Null for targets that bytes alone can move.
        void (*relocate)(void* to, void* from) noexcept;
    };

    template <class Target>
    static Target& inlineTarget(void* storage) noexcept {
        return *std::launder(static_cast<Target*>(storage));
    }

    template <class Target>
    static Target*& heapTarget(void* storage) noexcept {
        return *std::launder(static_cast<Target**>(storage));
    }

    template <class Target>
    static void relocateInline(void* to, void* from) noexcept {
        auto& source = inlineTarget<Target>(from);
        if (to != nullptr) ::new (to) Target(std::move(source));
        source.~Target();  // NOLINT(bugprone-use-after-move)
    }

    template <class Target>
    static void relocateHeap(void* to, void* from) noexcept {
        Target* const target = heapTarget<Target>(from);
        if (to != nullptr) {
            ::new (to) Target*(target);
        } else {
            delete target;
        }
    }

    template <class Target>
    static constexpr Operations inlineOperations{
        [](void* storage, Args&&... args) -> R {
            return static_cast<R>(inlineTarget<Target>(storage)(std::forward<Args>(args)...));
        },
        std::is_trivially_copyable_v<Target>&& std::is_trivially_destructible_v<Target> ? nullptr
                                                                                        : &relocateInline<Target>};

    template <class Target>
    static constexpr Operations heapOperations{
        [](void* storage, Args&&... args) -> R {
            return static_cast<R>((*heapTarget<Target>(storage))(std::forward<Args>(args)...));
        },
        &relocateHeap<Target>};

    void take(UniqueFunction& other) noexcept {
        operations_ = std::exchange(other.operations_, nullptr);
        if (operations_ == nullptr) return;
        if (operations_->relocate != nullptr) {
            operations_->relocate(storage_, other.storage_);
        } else {
#if defined(__GNUC__) && !defined(__clang__)
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wuninitialized"
#pragma GCC diagnostic ignored "-Wmaybe-uninitialized"
#endif
            // With what lies behind the target, which a user's compiler should not complain of.
            std::memcpy(storage_, other.storage_, InlineBytes);
#if defined(__GNUC__) && !defined(__clang__)
#pragma GCC diagnostic pop
#endif
        }
    }

    void reset() noexcept {
        const Operations* const operations = std::exchange(operations_, nullptr);
        if (operations != nullptr && operations->relocate != nullptr) operations->relocate(nullptr, storage_);
    }

    alignas(void*) std::byte storage_[InlineBytes];
    const Operations* operations_ = nullptr;
};

}  // namespace corvane
