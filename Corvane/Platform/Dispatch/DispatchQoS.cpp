#include <Corvane/Platform/Dispatch/DispatchQoS.hpp>

namespace corvane {

std::string_view description(QoSClass qosClass) noexcept {
    switch (qosClass) {
        case QoSClass::unspecified:
            return "unspecified";
        case QoSClass::background:
            return "background";
        case QoSClass::utility:
            return "utility";
        case QoSClass::default_:
            return "default";
        case QoSClass::userInitiated:
            return "userInitiated";
        case QoSClass::userInteractive:
            return "userInteractive";
    }
    return "unspecified";
}

std::string DispatchQoS::description() const {
    return std::string(corvane::description(qosClass)) + ", relative priority " + std::to_string(relativePriority);
}

}  // namespace corvane
