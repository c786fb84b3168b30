#include <cxxabi.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <utility>

#include <fmt/compile.h>
#include <fmt/format.h>

#include <Corvane/Observation/ObjectLifecycleMonitor.hpp>

namespace corvane {

namespace {

std::vector<WeakObjectWrapper>& list() noexcept {
    static auto& objects = *new std::vector<WeakObjectWrapper>;
    return objects;
}

void dropGone() {
    std::erase_if(list(), [](const WeakObjectWrapper& object) { return object.object() == nullptr; });
}

}  // namespace

std::string detail::describeObject(const std::type_info& type, const void* address) {
    int status = 0;
    const std::unique_ptr<char, void (*)(void*)> name(abi::__cxa_demangle(type.name(), nullptr, nullptr, &status),
                                                      &std::free);
    return fmt::format(FMT_COMPILE("{}: {}"), name != nullptr ? name.get() : type.name(), address);
}

void ObjectLifecycleMonitor::add(WeakObjectWrapper object) {
    // Before it would grow, so that it stays within a multiple of what lives even if nobody ever prints.
    if (list().size() == list().capacity()) dropGone();
    list().push_back(std::move(object));
}

void ObjectLifecycleMonitor::printAliveObjects() {
    dropGone();
    // A copy: a description may add objects.
    for (const WeakObjectWrapper& object : std::vector(list())) {
        std::string line = object.description();
        std::ranges::replace(line, '\n', ' ');
        line += '\n';
        std::fwrite(line.data(), 1, line.size(), stdout);
    }
}

const std::vector<WeakObjectWrapper>& ObjectLifecycleMonitor::objects() noexcept {
    return list();
}

}  // namespace corvane
