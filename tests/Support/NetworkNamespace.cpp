#include "NetworkNamespace.hpp"

#include <sys/wait.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>

#include <gtest/gtest.h>

namespace {

constexpr const char* insideVariable = "CORVANE_TEST_NETWORK_NAMESPACE";
const std::string inNamespace = "unshare --map-root-user --net ";

/// The exit status of a shell's command, -1 when it has none. Its output is ours.
int run(const std::string& command) {
    // The shell is waited for at once; nothing of ours depends on the threads it does not have.
    const int status = std::system(command.c_str());  // NOLINT(cert-env33-c)
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

void skip() {
    if (std::getenv("CI") != nullptr) FAIL() << "network namespaces are not permitted here, and CI wants this test";
    GTEST_SKIP() << "network namespaces are not permitted here";
}

}  // namespace

bool NetworkNamespace::enter() {
    if (std::getenv(insideVariable) != nullptr) return true;
    if (run(inNamespace + "ip link show lo >/dev/null 2>&1") != 0) {
        skip();
        return false;
    }
    const auto* const test = ::testing::UnitTest::GetInstance()->current_test_info();
    const std::string program = std::filesystem::read_symlink("/proc/self/exe");
    const int status =
        run("env -u GTEST_OUTPUT -u XML_OUTPUT_FILE " + std::string(insideVariable) + "=1 " + inNamespace + "'" +
            program + "' --gtest_brief=1 --gtest_filter='" + test->test_suite_name() + "." + test->name() + "'");
    EXPECT_EQ(status, 0) << "the test failed in a network of its own";
    return false;
}

void NetworkNamespace::ip(const std::string& arguments) {
    EXPECT_EQ(run("ip " + arguments), 0) << "ip " << arguments;
}

void NetworkNamespace::ipBatch(const std::string& commands) {
    FILE* const pipe = ::popen("ip -batch -", "w");  // NOLINT(cert-env33-c)
    ASSERT_NE(pipe, nullptr);
    EXPECT_EQ(std::fputs(commands.c_str(), pipe) < 0, false);
    EXPECT_EQ(::pclose(pipe), 0) << "ip -batch";
}
