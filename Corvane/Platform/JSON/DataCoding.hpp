#pragma once

#include <expected>
#include <string>
#include <utility>

#include <Corvane/Platform/Data.hpp>
#include <Corvane/Platform/JSON/Coding.hpp>
#include <Corvane/Platform/JSON/Decoder.hpp>
#include <Corvane/Platform/JSON/Encoder.hpp>
#include <Corvane/Platform/JSON/ValueDecoding.hpp>
#include <Corvane/Platform/JSON/ValueEncoding.hpp>
#include <Corvane/Platform/Text/Base64.hpp>

namespace corvane {

/// Bytes in JSON are text: Base64 as `base64Text` writes it.
template <>
struct Coding<Data> {
    [[nodiscard]] static std::expected<Data, DecodingError> decode(const Decoder& decoder) {
        const auto text = decoder.decode<std::string>();
        if (!text) return std::unexpected(text.error());
        auto data = base64Data(*text);
        if (!data) return std::unexpected(decoder.dataCorrupted("The text is not Base64"));
        return *std::move(data);
    }

    static void encode(const Data& data, Encoder& encoder) { encoder.encode(base64Text(data.bytes())); }
};

}  // namespace corvane
