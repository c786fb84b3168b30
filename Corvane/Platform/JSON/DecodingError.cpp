#include <utility>

#include <Corvane/Platform/JSON/DecodingError.hpp>

namespace corvane {

DecodingError DecodingError::typeMismatch(std::string expected, Context context) {
    return DecodingError(TypeMismatch{std::move(expected), std::move(context)});
}

DecodingError DecodingError::valueNotFound(std::string expected, Context context) {
    return DecodingError(ValueNotFound{std::move(expected), std::move(context)});
}

DecodingError DecodingError::keyNotFound(CodingKey key, Context context) {
    return DecodingError(KeyNotFound{std::move(key), std::move(context)});
}

DecodingError DecodingError::dataCorrupted(Context context) {
    return DecodingError(DataCorrupted{std::move(context)});
}

auto DecodingError::context() const noexcept -> const Context& {
    return std::visit([](const auto& payload) -> const Context& { return payload.context; }, case_);
}

std::string DecodingError::errorDescription() {
    return "The data is not in the expected format.";
}

}  // namespace corvane
