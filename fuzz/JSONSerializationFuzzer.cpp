#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <span>
#include <string>

#include <Corvane/Platform/JSON/JSONSerialization.hpp>

namespace {

using corvane::Data;
using corvane::JSONDictionary;
using corvane::JSONSerialization;
using corvane::JSONValue;
using corvane::JSONWritingOptions;

void require(bool holds) {
    if (!holds) std::abort();
}

/// What was read can be written, reads back equal, and is then written the same.
void checkRoundTrip(const JSONValue& value, JSONWritingOptions options) {
    const auto written = JSONSerialization::data(value, options);
    require(written.has_value());
    const auto again = JSONSerialization::jsonObject(*written);
    require(again.has_value() && *again == value);
    require(JSONSerialization::data(*again, options) == written);
}

/// Every member is found under its key, and a changed copy leaves the original alone.
void checkDictionary(const JSONDictionary& dictionary) {
    JSONDictionary copy = dictionary;
    for (const auto& [key, value] : dictionary) {
        require(dictionary.find(key) == &value);
        if (key.size() % 2 == 0) {
            require(copy.remove(key) && !copy.contains(key));
        } else {
            copy.set(key, nullptr);
        }
    }
    for (const auto& [key, value] : copy)
        require(value.isNull() && key.size() % 2 == 1 && dictionary.contains(key));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    const auto value = JSONSerialization::jsonObject(Data(std::as_bytes(std::span(bytes, size))));
    if (!value) {
        require(value.error().domain() == corvane::jsonErrorDomain && value.error().code() != 0);
        return 0;
    }
    for (const bool pretty : {false, true}) {
        for (const bool sorted : {false, true}) {
            checkRoundTrip(*value, {.prettyPrinted = pretty, .sortedKeys = sorted});
        }
    }
    if (const JSONDictionary* const dictionary = value->asDictionary()) checkDictionary(*dictionary);
    return 0;
}
