#include <Corvane/Core/LogCategory.hpp>

namespace corvane {

std::string_view description(LogCategory category) noexcept {
    switch (category) {
        case LogCategory::benchmark:
            return "Benchmark";
        case LogCategory::command:
            return "Command";
        case LogCategory::concurrency:
            return "Concurrency";
        case LogCategory::dataCache:
            return "Data Cache";
        case LogCategory::decoding:
            return "Decoding";
        case LogCategory::fileManager:
            return "File Manager";
        case LogCategory::unspecified:
            break;
        case LogCategory::userInterface:
            return "User Interface / Corvane";
    }
    return "Unspecified";
}

}  // namespace corvane
