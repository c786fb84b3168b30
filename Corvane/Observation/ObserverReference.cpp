#include <charconv>
#include <cstdint>

#include <Corvane/Observation/ObserverReference.hpp>

namespace corvane {

bool ObserverReference::isSame(const std::weak_ptr<const void>& registered) const noexcept {
    // The owners first, which takes no atomic operation: most are of other objects.
    const bool isOther = registered.owner_before(object_) || object_.owner_before(registered);
    return !isOther && registered.lock() == object_;
}

std::string ObserverReference::key() const {
    constexpr int hexadecimal = 16;
    char text[2 + 2 * sizeof(std::uintptr_t)] = {'0', 'x'};
    const auto address = reinterpret_cast<std::uintptr_t>(object_.get());
    return {text, std::to_chars(text + 2, text + sizeof text, address, hexadecimal).ptr};
}

}  // namespace corvane
