#include <fcntl.h>
#include <limits.h>
#include <stdlib.h>
#include <sys/stat.h>
#include <time.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <forward_list>
#include <limits>
#include <mutex>
#include <string>
#include <string_view>

#include <Corvane/Platform/Dates/Private/SystemZone.hpp>
#include <Corvane/Platform/Dates/Private/ZoneAccess.hpp>
#include <Corvane/Platform/Dates/Private/ZoneFile.hpp>

namespace corvane::systemZone {

namespace {

constexpr const char* localTime = "/etc/localtime";

/// What the answer depends on; as long as it is the same, so is the answer.
struct Source {
    std::string variable;
    bool isSet = false;
    dev_t device = 0;
    ino_t file = 0;
    timespec changed{};

    static Source now() {
        Source source;
        // TZ is not configuration of ours but the name that the system has for this process's zone, and we cannot leave
        // it to others. libc, which reads it too, tells the offset of one instant and no rules. ICU takes rules that TZ
        // spells out for UTC, and for all else uses a database of another year. Without TZ we would contradict
        // `localtime` in the same process. As with libc, a process that changes its environment beside other threads
        // is at fault.
        if (const char* const variable = ::getenv("TZ")) {  // NOLINT(concurrency-mt-unsafe)
            source.variable = variable;
            source.isSet = true;
            return source;
        }
        struct stat status{};
        if (::stat(localTime, &status) == 0) {
            source.device = status.st_dev;
            source.file = status.st_ino;
            source.changed = status.st_mtim;
        }
        return source;
    }

    bool operator==(const Source& other) const noexcept {
        return variable == other.variable && isSet == other.isSet && device == other.device && file == other.file &&
               changed.tv_sec == other.changed.tv_sec && changed.tv_nsec == other.changed.tv_nsec;
    }
};

TimeZone fromFile(const std::string& path, std::string identifier) {
    auto rules = loadZone(path);
    return rules ? ZoneAccess::adopt(std::move(identifier), *std::move(rules)) : TimeZone::utc();
}

/// The value of TZ: ":file", a file, or the rules themselves. What is none of them means UTC, as with libc.
TimeZone fromVariable(std::string text) {
    if (text.starts_with(':')) text.erase(0, 1);
    if (text.empty()) return TimeZone::utc();
    if (text.starts_with('/')) return fromFile(text, text);
    if (const auto zone = TimeZone::named(text)) return *zone;
    const auto rules = PosixZone::parse(text);
    if (!rules) return TimeZone::utc();
    return ZoneAccess::adopt(std::move(text), ZoneRules({{.from = std::numeric_limits<std::int64_t>::min(),
                                                          .offset = rules->standard.offset,
                                                          .daylightSaving = 0,
                                                          .isDaylightSaving = false,
                                                          .abbreviation = rules->standard.abbreviation}},
                                                        rules));
}

/// The file is a link into the database, which tells the name, or a copy of a file there, which does not.
TimeZone fromLocalTime() {
    std::array<char, PATH_MAX> resolved{};
    if (::realpath(localTime, resolved.data()) == nullptr) return TimeZone::utc();
    const std::string path = resolved.data();
    constexpr std::string_view folder = "/zoneinfo/";
    if (const auto place = path.find(folder); place != std::string::npos) {
        if (const auto zone = TimeZone::named(std::string_view(path).substr(place + folder.size()))) return *zone;
    }
    return fromFile(path, path);
}

/// Without a descriptor every zone that has to be read would seem to be UTC.
bool hasDescriptors() {
    const int file = ::open("/", O_PATH | O_CLOEXEC);
    if (file < 0) return errno != EMFILE && errno != ENFILE;
    ::close(file);
    return true;
}

class Device {
  public:
    static Device& shared() {
        static auto& device = *new Device;
        return device;
    }

    const TimeZone& zone() {
        if (coarseSeconds() >= nextLook_.load(std::memory_order_acquire)) look();
        return *zone_.load(std::memory_order_acquire);
    }

    void look() {
        const std::lock_guard lock(mutex_);
        Source source = Source::now();
        const bool isFirst = zone_.load(std::memory_order_relaxed) == nullptr;
        if (isFirst || !(source == source_)) {
            const bool isReadable = hasDescriptors();
            if (isReadable || isFirst) {
                zone_.store(keep(source.isSet ? fromVariable(source.variable) : fromLocalTime()),
                            std::memory_order_release);
            }
            if (isReadable) source_ = std::move(source);
        }
        // Whoever sees that there is no need to look sees the zone as well.
        nextLook_.store(coarseSeconds() + 1, std::memory_order_release);
    }

    const TimeZone* replacement() const noexcept { return replacement_.load(std::memory_order_acquire); }

    void replace(std::optional<TimeZone> zone) {
        const std::lock_guard lock(mutex_);
        replacement_.store(zone ? keep(*zone) : nullptr, std::memory_order_release);
    }

  private:
    /// Not the clock seam's time: the machine's zone changes in real time, and this has to cost next to nothing. Ticks
    /// of some milliseconds are fine enough.
    static std::int64_t coarseSeconds() noexcept {
        timespec time{};
        ::clock_gettime(CLOCK_MONOTONIC_COARSE, &time);
        return time.tv_sec;
    }

    /// Others may be reading any zone that was ever given out. There are as many as somebody has travelled through.
    const TimeZone* keep(const TimeZone& zone) {
        const auto known = std::ranges::find(kept_, zone);
        return known != kept_.end() ? &*known : &kept_.emplace_front(zone);
    }

    std::mutex mutex_;
    std::atomic<const TimeZone*> zone_ = nullptr;
    std::atomic<const TimeZone*> replacement_ = nullptr;
    std::atomic<std::int64_t> nextLook_ = 0;
    Source source_;
    std::forward_list<TimeZone> kept_;
};

}  // namespace

const TimeZone& get() {
    return Device::shared().zone();
}

void reset() {
    Device::shared().look();
}

const TimeZone* replacement() noexcept {
    return Device::shared().replacement();
}

void replace(std::optional<TimeZone> zone) {
    Device::shared().replace(zone);
}

}  // namespace corvane::systemZone
