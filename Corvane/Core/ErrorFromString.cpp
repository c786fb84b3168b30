#include <utility>

#include <fmt/compile.h>
#include <fmt/format.h>

#include <Corvane/Core/ErrorFromString.hpp>

namespace corvane {

ErrorFromString::ErrorFromString(std::string value, SourceFileContext context)
    : value_(std::move(value)),
      // The brackets deliberately do not match.
      debugDescription_(fmt::format(FMT_COMPILE("<{})> declared from: {}, in {}, at line: {}"), value_,
                                    context.function(), context.fileName(), context.line())) {}

ErrorFromString errorFromString(std::string value, SourceFileContext context) {
    return ErrorFromString(std::move(value), context);
}

}  // namespace corvane
