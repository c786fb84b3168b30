#include "ResolverStub.hpp"

#include <dlfcn.h>
#include <netdb.h>

#include <condition_variable>
#include <mutex>
#include <string_view>

namespace {

struct State {
    std::mutex mutex;
    std::condition_variable changed;
    bool isHanging = false;
    std::size_t hanging = 0;
    bool isRecovered = false;
};

// Leaked: a look-up that was abandoned may outlive main().
State& state() {
    static auto* const instance = new State;
    return *instance;
}

void hang() {
    std::unique_lock lock(state().mutex);
    ++state().hanging;
    state().changed.notify_all();
    state().changed.wait(lock, [] { return !state().isHanging; });
    --state().hanging;
    state().changed.notify_all();
}

}  // namespace

ResolverStub::ResolverStub() {
    const std::lock_guard lock(state().mutex);
    state().isHanging = true;
    state().isRecovered = false;
}

ResolverStub::~ResolverStub() {
    std::unique_lock lock(state().mutex);
    state().isHanging = false;
    state().changed.notify_all();
    state().changed.wait(lock, [] { return state().hanging == 0; });
}

void ResolverStub::waitForHangingLookups(std::size_t count) const {
    std::unique_lock lock(state().mutex);
    state().changed.wait(lock, [count] { return state().hanging >= count; });
}

void ResolverStub::recover() {
    const std::lock_guard lock(state().mutex);
    state().isRecovered = true;
}

/// Takes the C library's place for the whole program, libcurl included.
extern "C" [[gnu::visibility("default")]] int getaddrinfo(const char* name, const char* service, const addrinfo* hints,
                                                          addrinfo** result) {
    const std::string_view host = name == nullptr ? "" : name;
    if (host == "hanging.test") hang();
    using Function = int (*)(const char*, const char*, const addrinfo*, addrinfo**);
    static const auto real = reinterpret_cast<Function>(::dlsym(RTLD_NEXT, "getaddrinfo"));
    if (host == "recovering.test") {
        const std::lock_guard lock(state().mutex);
        return state().isRecovered ? real("127.0.0.1", service, hints, result) : EAI_AGAIN;
    }
    if (host.ends_with(".test")) return EAI_NONAME;
    return real(name, service, hints, result);
}
