#pragma once

#include <string>
#include <string_view>

#include <Corvane/Export.hpp>

namespace corvane {

/// How urgent work is, least urgent first. Each class but `unspecified` has a global queue of its own whose worker
/// threads carry the class's nice value.
enum class QoSClass : unsigned char {
    unspecified,
    background,
    utility,
    default_,
    userInitiated,
    userInteractive,
};

/// The name of the class: "userInteractive", "default", ...
[[nodiscard]] CORVANE_EXPORT std::string_view description(QoSClass qosClass) noexcept;

/// A quality of service: a class, and a priority relative to others of the class, from -15 to 0. The queues go by
/// the class; the priority is carried and printed, and orders nothing.
struct CORVANE_EXPORT DispatchQoS {
    QoSClass qosClass = QoSClass::unspecified;
    int relativePriority = 0;

    /// "default, relative priority 0".
    [[nodiscard]] std::string description() const;

    friend bool operator==(const DispatchQoS&, const DispatchQoS&) = default;
};

}  // namespace corvane
