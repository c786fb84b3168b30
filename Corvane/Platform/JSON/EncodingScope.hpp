#pragma once

#include <cstddef>
#include <string>

#include <Corvane/Platform/JSON/CodingPath.hpp>
#include <Corvane/Platform/JSON/JSONOutput.hpp>

namespace corvane::detail {

/// The dictionary or array that a container writes, and its place. Not to be moved: its path is pointed at.
class EncodingScope {
  public:
    EncodingScope(JSONOutput& output, const CodingStep* path) noexcept : output_(output), path_(path) {}

    /// One inside another container.
    EncodingScope(JSONOutput& output, const CodingStep& step)
        : output_(output), key_(step.key), step_(step), path_(&step_) {
        step_.key = key_;
    }

    EncodingScope(const EncodingScope&) = delete;
    EncodingScope& operator=(const EncodingScope&) = delete;
    ~EncodingScope() = default;

    [[nodiscard]] JSONOutput& output() const noexcept { return output_; }

    [[nodiscard]] const CodingStep* path() const noexcept { return path_; }

    void setOpen() noexcept { depth_ = output_.depth(); }

    /// Whether a value may be written now; reports a container inside this one that has not ended.
    [[nodiscard]] bool isInnermost() {
        if (depth_ == 0) return false;
        if (output_.depth() == depth_) return true;
        output_.fail("A nested container is still open", path_);
        return false;
    }

  private:
    JSONOutput& output_;
    std::string key_;
    CodingStep step_;
    const CodingStep* path_;
    std::size_t depth_ = 0;
};

}  // namespace corvane::detail
