#pragma once

#include <utility>

#include <Corvane/Export.hpp>

namespace corvane::detail {

struct JSONBlock;
struct JSONAccess;

/// A counted reference to the immutable content of a JSON text, array or dictionary; null stands for an empty
/// one. An implementation detail of `JSONValue`, here only because its size must be known.
class CORVANE_EXPORT JSONBlockReference {
  public:
    constexpr JSONBlockReference() noexcept = default;

    /// Takes over a reference that is already counted, or none at all inside the document that owns the
    /// block.
    explicit JSONBlockReference(const JSONBlock* block) noexcept : block_(block) {}

    JSONBlockReference(const JSONBlockReference& other) noexcept : block_(other.block_) {
        if (block_ != nullptr) retain(block_);
    }

    JSONBlockReference(JSONBlockReference&& other) noexcept : block_(std::exchange(other.block_, nullptr)) {}

    JSONBlockReference& operator=(JSONBlockReference other) noexcept {
        std::swap(block_, other.block_);
        return *this;
    }

    constexpr ~JSONBlockReference() {
        if (block_ != nullptr) release(block_);
    }

    [[nodiscard]] const JSONBlock* get() const noexcept { return block_; }

    /// Hands the reference over to the caller, uncounted.
    [[nodiscard]] const JSONBlock* detach() noexcept { return std::exchange(block_, nullptr); }

  private:
    static void retain(const JSONBlock* block) noexcept;
    static void release(const JSONBlock* block) noexcept;

    const JSONBlock* block_ = nullptr;
};

}  // namespace corvane::detail
