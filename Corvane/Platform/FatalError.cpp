#include <unistd.h>

#include <cstdlib>
#include <string>

#include <Corvane/Platform/FatalError.hpp>

namespace corvane {

void fatalError(std::string_view message, std::source_location where) {
    std::string text = "Fatal error: ";
    text += message;
    text += "\n    at ";
    text += where.file_name();
    text += ':';
    text += std::to_string(where.line());
    text += '\n';
    // One write, so that lines of other threads cannot come in between.
    [[maybe_unused]] const auto written = ::write(STDERR_FILENO, text.data(), text.size());
    std::abort();
}

}  // namespace corvane
