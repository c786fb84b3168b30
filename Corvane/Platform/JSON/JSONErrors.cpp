#include <Corvane/Platform/JSON/Private/JSONErrors.hpp>

namespace corvane::detail {

JSONErrorCode jsonErrorCode(simdjson::error_code error) noexcept {
    switch (error) {
        case simdjson::EMPTY:
            return JSONErrorCode::emptyInput;
        case simdjson::UTF8_ERROR:
            return JSONErrorCode::invalidUTF8;
        case simdjson::DEPTH_ERROR:
            return JSONErrorCode::tooDeep;
        case simdjson::NUMBER_ERROR:
            return JSONErrorCode::invalidNumber;
        case simdjson::CAPACITY:
            return JSONErrorCode::tooLarge;
        case simdjson::MEMALLOC:
            return JSONErrorCode::outOfMemory;
        default:
            return JSONErrorCode::malformed;
    }
}

std::string jsonErrorText(JSONErrorCode code) {
    switch (code) {
        case JSONErrorCode::emptyInput:
            return "The JSON text is empty.";
        case JSONErrorCode::malformed:
            return "The text is not valid JSON.";
        case JSONErrorCode::invalidUTF8:
            return "The text is not valid UTF-8.";
        case JSONErrorCode::tooDeep:
            return "The JSON value is nested too deeply.";
        case JSONErrorCode::invalidNumber:
            return "The JSON text holds a number that is malformed or too large.";
        case JSONErrorCode::tooLarge:
            return "The JSON text is too large.";
        case JSONErrorCode::nonFiniteNumber:
            return "JSON cannot express a number that is not finite.";
        case JSONErrorCode::outOfMemory:
            return "There is not enough memory for the JSON value.";
    }
    return {};
}

}  // namespace corvane::detail
