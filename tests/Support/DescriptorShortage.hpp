#pragma once

#include <sys/resource.h>

namespace corvane {

/// As long as it lives, the process gets no new descriptor.
class DescriptorShortage {
  public:
    /// The sanitizer of undefined behaviour, which comes with that of addresses, opens a pipe to look at an object.
#ifdef __SANITIZE_ADDRESS__
    static constexpr bool isPossible = false;
#else
    static constexpr bool isPossible = true;
#endif

    DescriptorShortage() {
        ::getrlimit(RLIMIT_NOFILE, &former_);
        const rlimit none{.rlim_cur = 0, .rlim_max = former_.rlim_max};
        ::setrlimit(RLIMIT_NOFILE, &none);
    }

    ~DescriptorShortage() { ::setrlimit(RLIMIT_NOFILE, &former_); }

    DescriptorShortage(const DescriptorShortage&) = delete;
    DescriptorShortage& operator=(const DescriptorShortage&) = delete;

  private:
    rlimit former_{};
};

}  // namespace corvane
