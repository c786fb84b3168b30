#include <unordered_set>

#include <gtest/gtest.h>

#include <Corvane/Core/ErrorFromString.hpp>
#include <Corvane/Core/Hasher.hpp>
#include <Corvane/Core/SourceFileContext.hpp>
#include <Corvane/Platform/AnyError.hpp>

namespace corvane {

namespace {

SourceFileContext inner(SourceFileContext context = SourceFileContext::current()) {
    return context;
}

SourceFileContext outer(SourceFileContext context = SourceFileContext::current()) {
    return inner(context);
}

}  // namespace

TEST(SourceFileContext, PrintsGivenTextsAsTheyStand) {
    const struct {
        SourceFileContext context;
        std::string description;
    } cases[] = {
        {{"/app/Networking/Loader", "load()", 42}, "function load()\n\t\tin: Loader:42"},
        {{"Loader.cpp", "void Loader::load(int)", 7}, "function void Loader::load(int)\n\t\tin: Loader.cpp:7"},
        {{"/app/", nullptr, UINT64_MAX}, "function \n\t\tin: :18446744073709551615"},
    };

    for (const auto& [context, description] : cases)
        EXPECT_EQ(context.description(), description);
    EXPECT_STREQ(cases[0].context.origin().file, "/app/Networking/Loader");
}

TEST(SourceFileContext, IsEqualToAnotherOfTheSameHash) {
    const SourceFileContext context("/a/b/File", "f()", 7);
    const std::string file = "/a/b/File";  // other addresses, same texts
    EXPECT_EQ(context, SourceFileContext(file.c_str(), "f()", 7));
    for (const SourceFileContext& other :
         {SourceFileContext("/a/b/File", "f()", 8), SourceFileContext("/a/b/File", "g()", 7),
          SourceFileContext("/a/File", "f()", 7), SourceFileContext("/a/b/Filef", "()", 7)})
        EXPECT_NE(context, other);
    const std::unordered_set<SourceFileContext> set{context, SourceFileContext("/a/b/File", "f()", 7), outer()};
    EXPECT_EQ(set.size(), 2U);
}

// Values of the reference cipher: openssl mac -macopt c-rounds:1 -macopt d-rounds:3 -macopt size:8 SIPHASH.
TEST(Hasher, IsSipHash13OfTheTextsAndTheirTerminators) {
    const auto hashOf = [](std::uint64_t seed, auto... texts) {
        Hasher hasher(seed);
        (hasher.combine(texts), ...);
        return hasher.finalize();
    };
    EXPECT_EQ(hashOf(0, "abc"), 0xef09e0f4895a251d);
    EXPECT_EQ(hashOf(0, "a longer text than one word"), 0xe5e5955f5836062d);
    EXPECT_EQ(hashOf(42, "/a/b/File.cpp", "f()", "7"), 0x45067e23fa3ce477);
    EXPECT_NE(hashOf(0, "ab", "c"), hashOf(0, "a", "bc"));
}

TEST(ErrorFromString, DescribesItselfToUsersAndDevelopers) {
    const ErrorFromString error("x", {"/a/b/File", "f()", 7});
    EXPECT_EQ(error.value(), "x");
    EXPECT_EQ(error.errorDescription(), "x");
    EXPECT_EQ(error.debugDescription(), "<x)> declared from: f(), in File, at line: 7");

    const ErrorFromString made = errorFromString("y");
    EXPECT_EQ(made.debugDescription(), "<y)> declared from: TestBody(), in SourceFileContextTests.cpp, at line: " +
                                           std::to_string(__LINE__ - 2));
    EXPECT_EQ(AnyError(made).localizedDescription(), "y");
}

}  // namespace corvane
