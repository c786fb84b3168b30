#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdint>
#include <cstring>
#include <limits>
#include <string_view>
#include <utility>
#include <vector>

#include <Corvane/Platform/Dates/Private/ZoneFile.hpp>

namespace corvane {

namespace {

constexpr std::size_t mostBytes = std::size_t{1} << 20;

/// Some 3,000 years either way. Files may begin with a transition that stands for the beginning of time, and an index
/// of the table is not for the time beyond.
constexpr std::int64_t farAway = 100'000'000'000;
constexpr std::uint32_t mostTransitions = 10'000;

/// The fields of a header, in the order of the file.
struct Header {
    char version;
    std::uint32_t utcFlags;
    std::uint32_t standardFlags;
    std::uint32_t leapSeconds;
    std::uint32_t transitions;
    std::uint32_t types;
    std::uint32_t characters;

    [[nodiscard]] std::size_t bodySize(std::size_t timeSize) const noexcept {
        return transitions * (timeSize + 1) + types * std::size_t{6} + characters + leapSeconds * (timeSize + 4) +
               standardFlags + utcFlags;
    }
};

/// Bytes from the front; asking for more than there are gives none.
class Bytes {
  public:
    explicit Bytes(std::span<const std::byte> bytes) : rest_(bytes) {}

    [[nodiscard]] std::size_t size() const noexcept { return rest_.size(); }

    std::span<const std::byte> take(std::size_t count) noexcept {
        const auto taken = rest_.first(std::min(count, rest_.size()));
        rest_ = rest_.subspan(taken.size());
        return taken;
    }

    /// The rest as text.
    [[nodiscard]] std::string_view text() const noexcept {
        return {reinterpret_cast<const char*>(rest_.data()), rest_.size()};
    }

  private:
    std::span<const std::byte> rest_;
};

/// Numbers are written with the most significant byte first, in two's complement.
std::int64_t signedNumber(std::span<const std::byte> bytes) noexcept {
    std::uint64_t value = 0;
    for (const std::byte byte : bytes)
        value = value << 8U | std::to_integer<std::uint64_t>(byte);
    const std::size_t unused = 64 - 8 * bytes.size();
    return static_cast<std::int64_t>(value << unused) >> unused;
}

std::optional<Header> readHeader(Bytes& bytes) noexcept {
    constexpr std::size_t headerSize = 44;
    const auto header = bytes.take(headerSize);
    if (header.size() != headerSize || std::memcmp(header.data(), "TZif", 4) != 0) return std::nullopt;
    const auto count = [&](std::size_t index) {
        return static_cast<std::uint32_t>(signedNumber(header.subspan(20 + 4 * index, 4)));
    };
    return Header{.version = static_cast<char>(header[4]),
                  .utcFlags = count(0),
                  .standardFlags = count(1),
                  .leapSeconds = count(2),
                  .transitions = count(3),
                  .types = count(4),
                  .characters = count(5)};
}

/// What the local time types of a file say, each as a span that has no start yet.
std::optional<std::vector<ZoneSpan>> readTypes(std::span<const std::byte> records, std::string_view names) {
    std::vector<ZoneSpan> types;
    for (; !records.empty(); records = records.subspan(6)) {
        const auto offset = signedNumber(records.first(4));
        const auto name = std::to_integer<std::size_t>(records[5]);
        if (offset < -25 * 3600 || offset > 26 * 3600 || name >= names.size()) return std::nullopt;
        const std::string_view abbreviation = names.substr(name);
        types.push_back({.from = std::numeric_limits<std::int64_t>::min(),
                         .offset = static_cast<std::int32_t>(offset),
                         .daylightSaving = 0,
                         .isDaylightSaving = records[4] != std::byte{0},
                         .abbreviation = std::string(abbreviation.substr(0, abbreviation.find('\0')))});
    }
    return types;
}

std::optional<std::vector<ZoneSpan>> readBody(Bytes& bytes, const Header& header, std::size_t timeSize) {
    if (header.types == 0 || header.leapSeconds != 0 || header.transitions > mostTransitions) return std::nullopt;
    if (bytes.size() < header.bodySize(timeSize)) return std::nullopt;
    auto times = bytes.take(header.transitions * timeSize);
    const auto indices = bytes.take(header.transitions);
    const auto records = bytes.take(header.types * std::size_t{6});
    const auto names = Bytes(bytes.take(header.characters)).text();
    bytes.take(header.standardFlags + std::size_t{header.utcFlags});

    const auto types = readTypes(records, names);
    if (!types) return std::nullopt;
    std::vector<ZoneSpan> spans = {types->front()};
    for (const std::byte index : indices) {
        const auto type = std::to_integer<std::size_t>(index);
        if (type >= types->size()) return std::nullopt;
        std::int64_t from = signedNumber(times.first(timeSize));
        times = times.subspan(timeSize);
        if (from < -farAway) from = spans.front().from;
        if (from < spans.back().from || from > farAway) return std::nullopt;
        spans.push_back((*types)[type]);
        spans.back().from = from;
    }
    return spans;
}

/// The file's bytes; absent when it is not to be had.
std::optional<std::vector<std::byte>> readFile(const std::string& path) {
    const int descriptor = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (descriptor < 0) return std::nullopt;
    std::optional<std::vector<std::byte>> bytes;
    struct stat status{};
    if (::fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode)) {
        bytes.emplace();
        std::array<std::byte, 4096> block{};
        ssize_t count = 0;
        while ((count = ::read(descriptor, block.data(), block.size())) > 0 || (count < 0 && errno == EINTR)) {
            if (count > 0) bytes->insert(bytes->end(), block.begin(), block.begin() + count);
            if (bytes->size() > mostBytes) break;
        }
        if (count != 0) bytes.reset();
    }
    ::close(descriptor);
    return bytes;
}

}  // namespace

std::optional<ZoneRules> readZone(std::span<const std::byte> content) {
    Bytes bytes(content);
    auto header = readHeader(bytes);
    std::size_t timeSize = 4;
    if (header && header->version >= '2') {
        // The first half is for readers of version 1, whose instants have 32 bits.
        bytes.take(header->bodySize(timeSize));
        header = readHeader(bytes);
        timeSize = 8;
    }
    if (!header) return std::nullopt;
    auto spans = readBody(bytes, *header, timeSize);
    if (!spans) return std::nullopt;

    std::optional<PosixZone> footer;
    if (timeSize == 8) {
        const std::string_view text = bytes.text();
        const auto end = text.find('\n', 1);
        if (!text.starts_with('\n') || end == std::string_view::npos) return std::nullopt;
        footer = PosixZone::parse(text.substr(1, end - 1));
        // An empty line says that the time after the last transition is not known: it is taken to stay as it is.
        if (!footer && end != 1) return std::nullopt;
    }
    return ZoneRules(*std::move(spans), footer);
}

std::optional<ZoneRules> loadZone(const std::string& path) {
    const auto bytes = readFile(path);
    return bytes ? readZone(*bytes) : std::nullopt;
}

}  // namespace corvane
