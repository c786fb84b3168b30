#pragma once

#include <sys/resource.h>

namespace corvane {

/// As long as it lives, the process gets no new descriptor.
class DescriptorShortage {
  public:
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
