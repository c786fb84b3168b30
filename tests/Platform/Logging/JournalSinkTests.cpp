#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstring>
#include <source_location>
#include <string>

#include <gtest/gtest.h>

#include <Corvane/Platform/Logging/JournalSink.hpp>

#include "tests/Support/TemporaryDirectory.hpp"

namespace corvane {

namespace {

/// Stands in for the journal: reads entries from its socket, or from the file that came along.
class FakeJournal {
  public:
    FakeJournal() { listen(); }

    ~FakeJournal() { ::close(socket_); }

    FakeJournal(const FakeJournal&) = delete;
    FakeJournal& operator=(const FakeJournal&) = delete;

    [[nodiscard]] std::string path() const { return folder_.path() / "socket"; }

    void restart() {
        ::close(socket_);
        ::unlink(path().c_str());
        listen();
    }

    /// The bytes of the next entry.
    std::string receive() {
        std::string bytes(1 << 20, '\0');
        ::iovec content{bytes.data(), bytes.size()};
        alignas(::cmsghdr) std::array<char, CMSG_SPACE(sizeof(int))> control{};
        ::msghdr message{};
        message.msg_iov = &content;
        message.msg_iovlen = 1;
        message.msg_control = control.data();
        message.msg_controllen = control.size();
        const auto size = ::recvmsg(socket_, &message, 0);
        EXPECT_GE(size, 0);
        bytes.resize(static_cast<std::size_t>(size));
        if (const ::cmsghdr* const header = CMSG_FIRSTHDR(&message)) {
            EXPECT_TRUE(bytes.empty());
            int file = -1;
            std::memcpy(&file, CMSG_DATA(header), sizeof(file));
            bytes.resize(static_cast<std::size_t>(::lseek(file, 0, SEEK_END)));
            EXPECT_EQ(::pread(file, bytes.data(), bytes.size(), 0), static_cast<ssize_t>(bytes.size()));
            EXPECT_LT(::ftruncate(file, 0), 0) << "the journal takes sealed files only";
            ::close(file);
        }
        return bytes;
    }

  private:
    void listen() {
        socket_ = ::socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0);
        ::sockaddr_un address{};
        address.sun_family = AF_UNIX;
        path().copy(address.sun_path, sizeof(address.sun_path) - 1);
        EXPECT_EQ(::bind(socket_, reinterpret_cast<const ::sockaddr*>(&address), sizeof(address)), 0);
    }

    testing::TemporaryDirectory folder_;
    int socket_ = -1;
};

}  // namespace

TEST(JournalSink, SendsStructuredFields) {
    FakeJournal journal;
    const auto sink = JournalSink::open(journal.path());
    ASSERT_TRUE(sink);
    const auto here = std::source_location::current();
    const std::string identifier = std::string("SYSLOG_IDENTIFIER=") + program_invocation_short_name + "\n";
    (*sink)->write({LogLevel::error, "Corvane", "Command", "a = b", {}, here});
    EXPECT_EQ(journal.receive(), "MESSAGE=a = b\nPRIORITY=3\nSUBSYSTEM=Corvane\nCATEGORY=Command\n" + identifier +
                                     "CODE_FILE=" + here.file_name() + "\nCODE_FUNC=" + here.function_name() +
                                     "\nCODE_LINE=" + std::to_string(here.line()) + "\n");

    journal.restart();
    (*sink)->write({LogLevel::debug, {}, {}, {}, {}, {}});
    EXPECT_EQ(journal.receive(), "MESSAGE=\nPRIORITY=7\nSUBSYSTEM=\nCATEGORY=\n" + identifier);
}

TEST(JournalSink, CarriesAnyContentAndSize) {
    FakeJournal journal;
    const auto sink = JournalSink::open(journal.path());
    ASSERT_TRUE(sink);
    const std::string binary("one\ntwo=3\n\0\xff\n", 14);
    for (const std::string& message : {binary, std::string(100'000, '\n'), std::string(8'000'000, '\n')}) {
        (*sink)->write({LogLevel::info, "s", "c", message, {}, {}});
        std::string size(8, '\0');
        for (std::size_t byte = 0; byte < 8; ++byte)
            size[byte] = static_cast<char>(message.size() >> (8 * byte));
        EXPECT_TRUE(journal.receive().starts_with("MESSAGE\n" + size + message + "\nPRIORITY=6\n")) << message.size();
    }
}

TEST(JournalSink, IsNotMadeWhereNobodyListens) {
    const auto missing = JournalSink::open(::testing::TempDir() + "no-such-socket");
    ASSERT_FALSE(missing);
    EXPECT_EQ(missing.error(), PlatformError("POSIXErrorDomain", ENOENT));
    EXPECT_EQ(JournalSink::open(std::string(200, 'x')).error().code(), ENAMETOOLONG);
}

}  // namespace corvane
