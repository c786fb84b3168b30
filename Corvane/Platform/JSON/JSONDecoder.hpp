#pragma once

#include <expected>
#include <optional>
#include <string_view>
#include <utility>

#include <Corvane/Platform/Data.hpp>
#include <Corvane/Platform/JSON/ValueDecoding.hpp>

namespace corvane {

/// Makes values of C++ types from JSON (RFC 8259).
///
///     struct Team { std::int64_t id; std::string name; std::optional<std::string> city; };
///
///     const auto teams = JSONDecoder().decode<std::vector<Team>>(body);
///     if (!teams) log.error(teams.error().description());  // There is no member "name" at [3].
///
/// What types there are and how they say what is special about them: see `Coding`. The rules:
///
/// - Members of a struct are found by name. Those that the struct does not have are passed over. One that is missing
///   is key-not-found, null is value-not-found, but an optional then keeps its initial value, which is absent unless
///   the struct says otherwise, and is absent for null.
/// - Of members with the same key the last counts, as if the others were not there.
/// - Integers are exact over all 64 bits; whole numbers written as 5.0 or 5e0 are integers too. What is out of the
///   type's range is data-corrupted, and so is a number beyond a double's. Numbers, Booleans and text are never made
///   from each other.
/// - `Date` is seconds since 1970, with a fraction.
/// - The whole document is validated, also what is passed over; one that is not JSON, that is nested deeper than
///   `JSONSerialization::maximumDepth`, or that has something behind its value is data-corrupted whatever else is
///   wrong with it. A byte order mark before the value is passed over.
///
/// A decoder holds nothing; all operations may be called on any thread.
class JSONDecoder {
  public:
    /// Decodes the whole document. The bytes are read where they are and need not outlive the call.
    template <Decodable T>
    [[nodiscard]] std::expected<T, DecodingError> decode(const Data& data) const {
        std::optional<T> value;
        auto error =
            detail::JSONCursor::readDocument(data.text(), &value, [](detail::JSONCursor& cursor, void* target) {
                auto read = detail::readNew<T>(cursor, nullptr);
                if (!read) return cursor.fail(std::move(read).error());
                static_cast<std::optional<T>*>(target)->emplace(*std::move(read));
                return true;
            });
        if (error) return std::unexpected(*std::move(error));
        return *std::move(value);
    }

    /// The same from text, which is copied once to give it the padding that `Data` has.
    template <Decodable T>
    [[nodiscard]] std::expected<T, DecodingError> decode(std::string_view text) const {
        return decode<T>(Data(text));
    }
};

}  // namespace corvane
