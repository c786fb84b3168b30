#pragma once

#include <cstddef>
#include <cstdint>
#include <expected>
#include <memory>
#include <optional>
#include <string_view>
#include <type_traits>
#include <vector>

#include <Corvane/Export.hpp>
#include <Corvane/Platform/Data.hpp>
#include <Corvane/Platform/JSON/CodingPath.hpp>
#include <Corvane/Platform/JSON/EncodingError.hpp>
#include <Corvane/Platform/JSON/JSONNumber.hpp>
#include <Corvane/Platform/JSON/JSONSerialization.hpp>

namespace corvane::detail {

class JSONTextWriter;

/// Takes the values of one document in their order. The wall between the templates that know the types and the JSON
/// writer. The first failure is kept, and what is written after it is of no use.
class CORVANE_EXPORT JSONOutput {
  public:
    explicit JSONOutput(JSONWritingOptions options);
    JSONOutput(const JSONOutput&) = delete;
    JSONOutput& operator=(const JSONOutput&) = delete;
    ~JSONOutput();

    void writeNull();
    void write(bool value);
    void write(double value, const CodingStep* path);
    void write(float value, const CodingStep* path);
    void writeText(std::string_view value, const CodingStep* path);
    void writeJSON(const JSONValue& value, const CodingStep* path);

    template <JSONInteger T>
    void write(T value) {
        if constexpr (std::is_signed_v<T>) {
            writeSigned(value);
        } else {
            writeUnsigned(value);
        }
    }

    /// False, and nothing opened, when the values are nested too deeply.
    [[nodiscard]] bool openDictionary(const CodingStep* path) { return open('{', path); }

    [[nodiscard]] bool openArray(const CodingStep* path) { return open('[', path); }

    void closeDictionary() { close('}'); }

    void closeArray() { close(']'); }

    /// To be called before each member's or element's value.
    void startMember(std::string_view key, const CodingStep* path);
    void startElement();

    /// How many arrays and dictionaries are open.
    [[nodiscard]] std::size_t depth() const noexcept { return hasItems_.size(); }

    void fail(std::string_view problem, const CodingStep* path);

    [[nodiscard]] std::expected<Data, EncodingError> finish();

  private:
    void writeSigned(std::int64_t value);
    void writeUnsigned(std::uint64_t value);
    [[nodiscard]] bool open(char bracket, const CodingStep* path);
    void close(char bracket);
    void checkText(std::string_view text, const CodingStep* path);

    JSONWritingOptions options_;
    std::unique_ptr<JSONTextWriter> writer_;
    /// For each array and dictionary that is open.
    std::vector<bool> hasItems_;
    std::optional<EncodingError> error_;
};

}  // namespace corvane::detail
