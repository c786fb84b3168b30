#pragma once

#include <expected>

#include <Corvane/Platform/Data.hpp>
#include <Corvane/Platform/JSON/EncodingError.hpp>
#include <Corvane/Platform/JSON/JSONSerialization.hpp>
#include <Corvane/Platform/JSON/ValueEncoding.hpp>

namespace corvane {

/// Writes values of C++ types as JSON (RFC 8259) that `JSONDecoder` reads back as equal values.
///
///     const auto body = JSONEncoder{.outputFormatting = {.sortedKeys = true}}.encode(team);
///
/// What types there are and how they say what is special about them: see `Coding`. Members are written in the order of
/// the struct, absent optional members not at all; an absent optional elsewhere is null. Numbers are written with the
/// fewest digits that tell them from their neighbours, `Date` as seconds since 1970.
///
/// May be used on any thread.
struct JSONEncoder {
    JSONWritingOptions outputFormatting{};

    template <Encodable T>
    [[nodiscard]] std::expected<Data, EncodingError> encode(const T& value) const {
        detail::JSONOutput output(outputFormatting);
        detail::writeValue(output, value, nullptr);
        return output.finish();
    }
};

}  // namespace corvane
