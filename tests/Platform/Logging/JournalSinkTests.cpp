#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <map>
#include <source_location>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include <Corvane/Platform/Logging/JournalSink.hpp>

namespace corvane {

namespace {

/// Stands in for the journal: reads entries from its socket, or from the file that came along.
class FakeJournal {
  public:
    FakeJournal() {
        std::string folder = ::testing::TempDir() + "journal.XXXXXX";
        folder_ = ::mkdtemp(folder.data());
        listen();
    }

    ~FakeJournal() {
        ::close(socket_);
        std::filesystem::remove_all(folder_);
    }

    FakeJournal(const FakeJournal&) = delete;
    FakeJournal& operator=(const FakeJournal&) = delete;

    [[nodiscard]] std::string path() const { return folder_ + "/socket"; }

    void restart() {
        ::close(socket_);
        ::unlink(path().c_str());
        listen();
    }

    /// The fields of the next entry.
    std::map<std::string, std::string> receive() {
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
        return parse(bytes);
    }

  private:
    void listen() {
        socket_ = ::socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0);
        ::sockaddr_un address{};
        address.sun_family = AF_UNIX;
        path().copy(address.sun_path, sizeof(address.sun_path) - 1);
        EXPECT_EQ(::bind(socket_, reinterpret_cast<const ::sockaddr*>(&address), sizeof(address)), 0);
    }

    static std::map<std::string, std::string> parse(std::string_view bytes) {
        std::map<std::string, std::string> fields;
        while (!bytes.empty()) {
            const auto nameEnd = bytes.find_first_of("=\n");
            const std::string name(bytes.substr(0, nameEnd));
            const bool framed = bytes[nameEnd] == '\n';
            bytes.remove_prefix(nameEnd + 1);
            std::uint64_t size = bytes.find('\n');
            if (framed) {
                std::memcpy(&size, bytes.data(), sizeof(size));  // both ends are this machine
                bytes.remove_prefix(sizeof(size));
            }
            EXPECT_EQ(bytes.at(size), '\n');
            EXPECT_TRUE(fields.emplace(name, bytes.substr(0, size)).second) << name;
            bytes.remove_prefix(size + 1);
        }
        return fields;
    }

    std::string folder_;
    int socket_ = -1;
};

}  // namespace

TEST(JournalSink, SendsStructuredFields) {
    FakeJournal journal;
    const auto sink = JournalSink::open(journal.path());
    ASSERT_TRUE(sink);
    const auto here = std::source_location::current();
    (*sink)->write({LogLevel::error, "Corvane", "Command", "a = b", {}, here});
    auto fields = journal.receive();
    EXPECT_EQ(fields["MESSAGE"], "a = b");
    EXPECT_EQ(fields["PRIORITY"], "3");
    EXPECT_EQ(fields["SUBSYSTEM"], "Corvane");
    EXPECT_EQ(fields["CATEGORY"], "Command");
    EXPECT_EQ(fields["SYSLOG_IDENTIFIER"], program_invocation_short_name);
    EXPECT_EQ(fields["CODE_FILE"], here.file_name());
    EXPECT_EQ(fields["CODE_FUNC"], here.function_name());
    EXPECT_EQ(fields["CODE_LINE"], std::to_string(here.line()));

    (*sink)->write({LogLevel::debug, {}, {}, {}, {}, {}});
    fields = journal.receive();
    EXPECT_EQ(fields["PRIORITY"], "7");
    EXPECT_FALSE(fields.contains("CODE_FILE"));
}

TEST(JournalSink, CarriesAnyContentAndSize) {
    FakeJournal journal;
    const auto sink = JournalSink::open(journal.path());
    ASSERT_TRUE(sink);
    const std::string binary("one\ntwo=3\n\0\xff\n", 14);
    for (const std::string& message : {binary, std::string(100'000, 'x'), std::string(8'000'000, '\n')}) {
        (*sink)->write({LogLevel::info, "s", "c", message, {}, {}});
        const auto fields = journal.receive();
        EXPECT_TRUE(fields.at("MESSAGE") == message) << message.size();
        EXPECT_EQ(fields.at("CATEGORY"), "c");
    }
}

TEST(JournalSink, OutlivesTheJournalsRestart) {
    FakeJournal journal;
    const auto sink = JournalSink::open(journal.path());
    ASSERT_TRUE(sink);
    journal.restart();
    (*sink)->write({LogLevel::info, "s", "c", "again", {}, {}});
    EXPECT_EQ(journal.receive().at("MESSAGE"), "again");
}

TEST(JournalSink, IsNotMadeWhereNobodyListens) {
    const auto missing = JournalSink::open(::testing::TempDir() + "no-such-socket");
    ASSERT_FALSE(missing);
    EXPECT_EQ(missing.error(), PlatformError("POSIXErrorDomain", ENOENT));
    EXPECT_EQ(JournalSink::open(std::string(200, 'x')).error().code(), ENAMETOOLONG);
}

}  // namespace corvane
