#pragma once

#include <memory>
#include <string>
#include <typeinfo>

#include <Corvane/Export.hpp>

namespace corvane {

namespace detail {

/// "app::Page: 0x55d0c0ffee00".
[[nodiscard]] CORVANE_EXPORT std::string describeObject(const std::type_info& type, const void* address);

}  // namespace detail

/// A weak reference to an object of any type that can still say what the object is.
class WeakObjectWrapper {
  public:
    template <class T>
    explicit WeakObjectWrapper(const std::shared_ptr<T>& object) noexcept : object_(object), describe_(&describe<T>) {}

    /// Null once the object is gone.
    [[nodiscard]] std::shared_ptr<const void> object() const noexcept { return object_.lock(); }

    [[nodiscard]] bool isGone() const noexcept { return object_.expired(); }

    /// What the object's own `debugDescription()` or else `description()` gives, or else its type and address; empty
    /// once the object is gone.
    [[nodiscard]] std::string description() const {
        const auto object = object_.lock();
        return object != nullptr ? describe_(object.get()) : std::string();
    }

  private:
    template <class T>
    static std::string describe(const void* address) {
        const T& object = *static_cast<const T*>(address);
        if constexpr (requires { std::string(object.debugDescription()); }) {
            return std::string(object.debugDescription());
        } else if constexpr (requires { std::string(object.description()); }) {
            return std::string(object.description());
        } else {
            return detail::describeObject(typeid(object), address);
        }
    }

    std::weak_ptr<const void> object_;
    std::string (*describe_)(const void* object);
};

}  // namespace corvane
