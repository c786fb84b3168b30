#include <Corvane/Networking/API/APIRepository.hpp>

namespace corvane::detail {

std::shared_ptr<DispatchQueue> makeRepositoryQueue() {
    return DispatchQueue::serial("org.corvane.tyapirepository", {.qosClass = QoSClass::background});
}

}  // namespace corvane::detail
