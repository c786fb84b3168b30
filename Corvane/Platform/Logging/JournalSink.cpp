#include <errno.h>
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <array>
#include <cstdint>
#include <cstring>
#include <string_view>
#include <utility>

#include <fmt/format.h>

#include <Corvane/Platform/Logging/JournalSink.hpp>
#include <Corvane/Platform/Private/POSIXError.hpp>

namespace corvane {

namespace {

using Datagram = fmt::basic_memory_buffer<char, 2048>;

void append(Datagram& datagram, std::string_view text) {
    datagram.append(text.data(), text.data() + text.size());
}

/// A value of one line goes as "NAME=value"; any other is framed by its length, eight bytes, least first.
void appendField(Datagram& datagram, std::string_view name, std::string_view value) {
    append(datagram, name);
    if (value.find('\n') == std::string_view::npos) {
        datagram.push_back('=');
    } else {
        datagram.push_back('\n');
        std::array<char, sizeof(std::uint64_t)> size{};
        for (std::size_t byte = 0; byte < size.size(); ++byte) {
            size[byte] = static_cast<char>(std::uint64_t{value.size()} >> (8 * byte) & 0xff);
        }
        append(datagram, {size.data(), size.size()});
    }
    append(datagram, value);
    datagram.push_back('\n');
}

/// The numbers of syslog (RFC 5424).
std::string_view priority(LogLevel level) noexcept {
    switch (level) {
        case LogLevel::debug:
            return "7";
        case LogLevel::info:
            return "6";
        case LogLevel::error:
        case LogLevel::off:
            break;
    }
    return "3";
}

::sockaddr_un address(std::string_view path) noexcept {
    ::sockaddr_un address{};
    address.sun_family = AF_UNIX;
    path.copy(address.sun_path, sizeof(address.sun_path) - 1);
    return address;
}

ssize_t send(int descriptor, ::msghdr& message) noexcept {
    ssize_t sent = -1;
    do {
        sent = ::sendmsg(descriptor, &message, MSG_NOSIGNAL);
    } while (sent < 0 && errno == EINTR);
    return sent;
}

/// A sealed file in memory that holds `content`, or -1: what the journal takes instead of a datagram too
/// large.
int sealedFile(std::string_view content) noexcept {
    const int file = ::memfd_create("journal-entry", MFD_CLOEXEC | MFD_ALLOW_SEALING);
    if (file < 0) return -1;
    while (!content.empty()) {
        const auto written = ::write(file, content.data(), content.size());
        if (written < 0 && errno == EINTR) continue;
        if (written <= 0) break;
        content.remove_prefix(static_cast<std::size_t>(written));
    }
    if (!content.empty() || ::fcntl(file, F_ADD_SEALS, F_SEAL_SHRINK | F_SEAL_GROW | F_SEAL_WRITE | F_SEAL_SEAL) != 0) {
        ::close(file);
        return -1;
    }
    return file;
}

void sendAsFile(int descriptor, ::sockaddr_un& to, std::string_view content) noexcept {
    const int file = sealedFile(content);
    if (file < 0) return;
    alignas(::cmsghdr) std::array<char, CMSG_SPACE(sizeof(int))> control{};
    ::msghdr message{};
    message.msg_name = &to;
    message.msg_namelen = sizeof(to);
    message.msg_control = control.data();
    message.msg_controllen = control.size();
    ::cmsghdr* const header = CMSG_FIRSTHDR(&message);
    header->cmsg_level = SOL_SOCKET;
    header->cmsg_type = SCM_RIGHTS;
    header->cmsg_len = CMSG_LEN(sizeof(int));
    std::memcpy(CMSG_DATA(header), &file, sizeof(file));
    send(descriptor, message);
    ::close(file);
}

}  // namespace

std::expected<std::shared_ptr<JournalSink>, PlatformError> JournalSink::open(std::string socketPath) {
    ::sockaddr_un to = address(socketPath);
    if (socketPath.size() >= sizeof(to.sun_path)) {
        errno = ENAMETOOLONG;
        return std::unexpected(lastPOSIXError());
    }
    const int descriptor = ::socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    if (descriptor < 0) return std::unexpected(lastPOSIXError());
    std::shared_ptr<JournalSink> sink(new JournalSink(descriptor, std::move(socketPath)));
    // Asks whether somebody listens. The answer ties the socket to that listener only, so it is undone again.
    if (::connect(descriptor, reinterpret_cast<const ::sockaddr*>(&to), sizeof(to)) != 0) {
        return std::unexpected(lastPOSIXError());
    }
    ::sockaddr nobody{};
    nobody.sa_family = AF_UNSPEC;
    static_cast<void>(::connect(descriptor, &nobody, sizeof(nobody)));
    return sink;
}

JournalSink::JournalSink(int descriptor, std::string socketPath) noexcept
    : descriptor_(descriptor), socketPath_(std::move(socketPath)) {}

JournalSink::~JournalSink() {
    ::close(descriptor_);
}

void JournalSink::write(const LogEntry& entry) noexcept {
    const int errnoBefore = errno;
    Datagram datagram;
    appendField(datagram, "MESSAGE", entry.message);
    appendField(datagram, "PRIORITY", priority(entry.level));
    appendField(datagram, "SUBSYSTEM", entry.subsystem);
    appendField(datagram, "CATEGORY", entry.category);
    appendField(datagram, "SYSLOG_IDENTIFIER", program_invocation_short_name);
    if (entry.origin.line != 0) {
        appendField(datagram, "CODE_FILE", entry.origin.file);
        appendField(datagram, "CODE_FUNC", entry.origin.function);
        appendField(datagram, "CODE_LINE", fmt::format_int(entry.origin.line).c_str());
    }

    ::sockaddr_un to = address(socketPath_);
    ::iovec content{datagram.data(), datagram.size()};
    ::msghdr message{};
    message.msg_name = &to;
    message.msg_namelen = sizeof(to);
    message.msg_iov = &content;
    message.msg_iovlen = 1;
    if (send(descriptor_, message) < 0 && (errno == EMSGSIZE || errno == ENOBUFS)) {
        sendAsFile(descriptor_, to, {datagram.data(), datagram.size()});
    }
    errno = errnoBefore;
}

}  // namespace corvane
