#include <algorithm>
#include <cstdio>
#include <utility>

#include <fmt/compile.h>
#include <fmt/format.h>

#include <Corvane/Observation/ObjectLifecycleMonitor.hpp>
#include <Corvane/Platform/Private/TypeName.hpp>

namespace corvane {

namespace {

std::vector<WeakObjectWrapper>& list() {
    static auto& objects = *new std::vector<WeakObjectWrapper>;
    return objects;
}

void dropGone() {
    // Held until the list has changed: with the last reference goes a deleter, and what that holds may add objects when
    // it ends.
    std::vector<WeakObjectWrapper> ended;
    std::erase_if(list(), [&ended](const WeakObjectWrapper& object) {
        const bool isGone = object.isGone();
        if (isGone) ended.push_back(object);
        return isGone;
    });
}

}  // namespace

std::string detail::describeObject(const std::type_info& type, const void* address) {
    return fmt::format(FMT_COMPILE("{}: {}"), typeName(type), address);
}

void ObjectLifecycleMonitor::add(WeakObjectWrapper object) {
    // Before it would grow, so that it stays within a multiple of what lives even if nobody ever prints.
    if (list().size() == list().capacity()) dropGone();
    list().push_back(std::move(object));
}

void ObjectLifecycleMonitor::printAliveObjects() {
    dropGone();
    // A copy: a description may add objects, and end some.
    for (const WeakObjectWrapper& object : std::vector(list())) {
        const auto kept = object.object();
        if (kept == nullptr) continue;
        std::string line = object.description();
        std::ranges::replace(line, '\n', ' ');
        line += '\n';
        std::fwrite(line.data(), 1, line.size(), stdout);
    }
}

const std::vector<WeakObjectWrapper>& ObjectLifecycleMonitor::objects() {
    return list();
}

}  // namespace corvane
