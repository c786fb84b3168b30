#pragma once

#include <expected>
#include <utility>

#include <Corvane/Platform/JSON/JSONDecoder.hpp>

namespace corvane {

/// What became of decoding a `T`: the value, or why there is none. Decoding one never fails itself, so that as the
/// element of a list it lets one bad element fail alone instead of the whole list. What is not JSON at all still fails
/// the whole document.
///
///     const auto teams = JSONDecoder().decode<std::vector<Throwable<Team>>>(body);
template <Decodable T>
class Throwable {
  public:
    [[nodiscard]] static std::expected<Throwable, DecodingError> decode(const Decoder& decoder) {
        return Throwable(decoder.decode<T>());
    }

    [[nodiscard]] const std::expected<T, DecodingError>& result() const noexcept { return result_; }

  private:
    explicit Throwable(std::expected<T, DecodingError> result) : result_(std::move(result)) {}

    std::expected<T, DecodingError> result_;
};

}  // namespace corvane
