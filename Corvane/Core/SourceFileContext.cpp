#include <type_traits>

#include <fmt/compile.h>
#include <fmt/format.h>

#include <Corvane/Core/Private/FunctionName.hpp>
#include <Corvane/Core/SourceFileContext.hpp>

namespace corvane {

static_assert(std::is_trivially_copyable_v<SourceFileContext> && sizeof(SourceFileContext) == 24,
              "it travels inside every queued block");

std::string SourceFileContext::function() const {
    return function_ != nullptr ? std::string(function_) : plainFunctionName(where_.function_name());
}

std::string SourceFileContext::description() const {
    return fmt::format(FMT_COMPILE("function {}\n\t\tin: {}:{}"), function(), fileName(), line_);
}

void SourceFileContext::hash(Hasher& hasher) const {
    hasher.combine(file());
    hasher.combine(function());
    hasher.combine(fmt::format_int(line_).c_str());
}

std::uint64_t SourceFileContext::hashValue() const {
    Hasher hasher(0);
    hash(hasher);
    return hasher.finalize();
}

}  // namespace corvane
