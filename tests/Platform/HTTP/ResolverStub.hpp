#pragma once

#include <cstddef>

/// Replaces name look-ups of this program (getaddrinfo) for hosts under ".test": "missing.test" is not found at once,
/// "hanging.test" hangs for as long as this object lives, "recovering.test" fails for now until `recover` and is
/// 127.0.0.1 then. All other names are looked up as ever.
class ResolverStub {
  public:
    ResolverStub();

    /// Lets the look-ups go that hang, all of which fail, and waits until they have left.
    ~ResolverStub();
    ResolverStub(const ResolverStub&) = delete;
    ResolverStub& operator=(const ResolverStub&) = delete;

    /// Blocks until so many look-ups hang.
    void waitForHangingLookups(std::size_t count) const;

    void recover();
};
