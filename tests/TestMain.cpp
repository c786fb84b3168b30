#include <gmock/gmock.h>
#include <gtest/gtest.h>

int main(int argc, char** argv) {
    testing::InitGoogleMock(&argc, argv);
    // Death tests start the program anew: a fork of a process with live threads proves nothing.
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    return RUN_ALL_TESTS();
}
