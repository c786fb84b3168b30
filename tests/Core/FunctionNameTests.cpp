#include <map>

#include <gtest/gtest.h>

#include <Corvane/Core/Private/FunctionName.hpp>
#include <Corvane/Core/SourceFileContext.hpp>
#include <Corvane/Platform/Dispatch/TaskHandle.hpp>

namespace corvane {

namespace {

std::string here(SourceFileContext context = SourceFileContext::current()) {
    return context.function();
}

std::string noted;

void note(SourceFileContext context = SourceFileContext::current()) {
    noted = context.function();
}

template <class T>
Task<> coroutine(T) {
    const auto inner = [](int) -> Task<> {
        note();
        co_return;
    };
    co_await inner(1);
}

template <char c, class T>
    requires(sizeof(T) < 64)
auto constrained(const std::vector<std::map<int, T>>&) noexcept -> decltype(std::string()) {
    return here();
}

template <class T>
struct Loader {
    Loader() { note(); }

    ~Loader() { note(); }

    std::string operator()(int) { return here(); }

    explicit operator const char*() const { return note(), ""; }

    std::string nestedLambda() {
        return [] { return [](auto) mutable { return here(); }('('); }();
    }
};

}  // namespace

// The signatures come from the compiler at hand, so every compiler that builds the tests is tested.
TEST(FunctionName, IsThePlainNameInTheCompilersSignature) {
    EXPECT_EQ(here(), "TestBody()");
    EXPECT_EQ((constrained<'\'', std::string>({})), "constrained()");

    Loader<std::map<int, std::vector<int>>> loader;
    EXPECT_EQ(noted, "Loader()");
    EXPECT_EQ(loader(1), "operator()()");
    static_cast<void>(static_cast<const char*>(loader));
    EXPECT_EQ(noted, "operator const char*()");
    {
        const Loader<int> ending;
    }
    EXPECT_EQ(noted, "~Loader()");

    EXPECT_EQ(loader.nestedLambda(), "nestedLambda()");
    runBlocking(coroutine(1));
    EXPECT_EQ(noted, "coroutine()");
}

// What only one of the compilers writes, and what is no signature.
TEST(FunctionName, ReadsTheSignaturesOfBothCompilers) {
    const struct {
        std::string_view signature, name;
    } cases[] = {
        {"void (* (* pick(int))(int))(double)", "pick()"},
        {"auto (*pick(int))(int) -> void (*)(double)", "pick()"},
        {"int (*pick(T) [T = int])(double)", "pick()"},
        {"int (S::* member(int))(double)", "member()"},
        {"decltype ((T{} < T{})) f(T) [with T = int]", "f()"},
        {"<dependent type> f(T) [T = int]", "f()"},
        {"std::string f[abi:cxx11](int)", "f()"},
        {"FP S::operator void (*)(int)() const", "operator void (*)(int)()"},
        {"S::operator std::vector<int>() const", "operator std::vector<int>()"},
        {"bool S::operator< <int>(T)::<lambda()>", "operator<()"},
        {"void* S::operator new [](std::size_t)", "operator new[]()"},
        {"Task outer::(anonymous namespace)::load()", "load()"},
        {"void outer::{anonymous}::load(load()::_ZN5outer4loadEv.Frame*)", "load()"},
        {"auto S::lam()::(anonymous class)::operator()()::(anonymous class)::operator()() const", "lam()"},
        {"void tl()::Loc::f() [with T = int]", "f()"},
    };

    for (const auto& [signature, name] : cases)
        EXPECT_EQ(plainFunctionName(signature), name);
    for (const std::string_view text :
         {"", "load", "f(", "a<b", "operator", "operator ", "f('", "((((", "<>", "::()"}) {
        EXPECT_EQ(plainFunctionName(text), text);
    }
}

}  // namespace corvane
