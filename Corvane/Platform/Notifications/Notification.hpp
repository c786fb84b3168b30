#pragma once

#include <any>
#include <cstddef>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <type_traits>
#include <typeinfo>
#include <utility>

#include <Corvane/Export.hpp>

namespace corvane {

/// What a notification is posted and observed under. Names are constants of whoever posts:
///
///     inline constexpr NotificationName scoreChanged{"scoreChanged"};
///
/// The text is not copied and must outlive the name.
class NotificationName {
  public:
    explicit constexpr NotificationName(std::string_view text) noexcept : text_(text) {}

    [[nodiscard]] constexpr std::string_view text() const noexcept { return text_; }

    friend constexpr bool operator==(NotificationName, NotificationName) noexcept = default;

  private:
    std::string_view text_;
};

/// A message to whoever observes its name. Immutable.
class CORVANE_EXPORT Notification {
  public:
    using UserInfo = std::map<std::string, std::any, std::less<>>;

    /// `object` is the sender, as a rule; it is kept alive until the notification is delivered.
    template <class T = void>
    explicit Notification(NotificationName name, std::shared_ptr<T> object = nullptr, UserInfo userInfo = {})
        : name_(name.text()),
          object_(std::move(object)),
          objectType_(&typeid(T)),
          isObjectConst_(std::is_const_v<T>),
          userInfo_(std::move(userInfo)) {}

    /// Without a sender.
    Notification(NotificationName name, std::nullptr_t, UserInfo userInfo)
        : Notification(name, std::shared_ptr<void>(), std::move(userInfo)) {}

    [[nodiscard]] NotificationName name() const noexcept { return NotificationName(name_); }

    [[nodiscard]] const std::shared_ptr<const void>& object() const noexcept { return object_; }

    /// The object when it was posted as exactly a `T`, const or not, null otherwise. An object posted as const is
    /// to be asked for as const.
    template <class T>
    [[nodiscard]] std::shared_ptr<T> objectAs() const noexcept {
        if (*objectType_ != typeid(T) || (isObjectConst_ && !std::is_const_v<T>)) return nullptr;
        // What is cast away here was put on here: an object posted as const is given out as const alone.
        return std::static_pointer_cast<T>(std::const_pointer_cast<void>(object_));
    }

    [[nodiscard]] const UserInfo& userInfo() const noexcept { return userInfo_; }

    /// The value under `key` when it is exactly a `T`, null otherwise; it lives as long as the notification.
    template <class T>
    [[nodiscard]] const T* info(std::string_view key) const noexcept {
        const auto entry = userInfo_.find(key);
        return entry != userInfo_.end() ? std::any_cast<T>(&entry->second) : nullptr;
    }

  private:
    std::string name_;
    std::shared_ptr<const void> object_;
    const std::type_info* objectType_;
    bool isObjectConst_;
    UserInfo userInfo_;
};

}  // namespace corvane
