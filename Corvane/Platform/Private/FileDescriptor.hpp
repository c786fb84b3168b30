#pragma once

#include <unistd.h>

#include <utility>

namespace corvane {

/// Owns a file descriptor.
class FileDescriptor {
  public:
    FileDescriptor() noexcept = default;

    explicit FileDescriptor(int descriptor) noexcept : descriptor_(descriptor) {}

    FileDescriptor(FileDescriptor&& other) noexcept : descriptor_(std::exchange(other.descriptor_, -1)) {}

    FileDescriptor& operator=(FileDescriptor&& other) noexcept {
        std::swap(descriptor_, other.descriptor_);
        return *this;
    }

    ~FileDescriptor() {
        if (descriptor_ >= 0) ::close(descriptor_);
    }

    [[nodiscard]] int get() const noexcept { return descriptor_; }

    [[nodiscard]] bool isOpen() const noexcept { return descriptor_ >= 0; }

    void close() noexcept { *this = FileDescriptor(); }

  private:
    int descriptor_ = -1;
};

}  // namespace corvane
