#pragma once

#include <memory>
#include <string>
#include <type_traits>
#include <utility>

#include <Corvane/Export.hpp>

namespace corvane {

/// Names an observer, any object with shared ownership, so that its registrations can be found again; nothing is called
/// on it. Made on the fly from a shared pointer, through whichever base class: it is the whole object that counts.
class CORVANE_EXPORT ObserverReference {
  public:
    template <class T>
    ObserverReference(const std::shared_ptr<T>& object) noexcept  // NOLINT(google-explicit-constructor)
        : object_(object, wholeObject(object.get())) {}

    /// Whether `registered` was made from this same object, and not from one that lived at its address before.
    [[nodiscard]] bool isSame(const std::weak_ptr<const void>& registered) const noexcept;

    [[nodiscard]] std::weak_ptr<const void> weak() const noexcept { return object_; }

    /// The object's address, "0x" and hexadecimal digits: unique among living objects.
    [[nodiscard]] std::string key() const;

  private:
    template <class T>
    static const void* wholeObject(const T* object) noexcept {
        if constexpr (std::is_polymorphic_v<T>) return dynamic_cast<const void*>(object);
        return object;
    }

    std::shared_ptr<const void> object_;
};

}  // namespace corvane
