#include <coroutine>
#include <functional>
#include <map>
#include <source_location>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

#include <gtest/gtest.h>

#include <Corvane/Core/Private/FunctionName.hpp>
#include <Corvane/Core/SourceFileContext.hpp>

namespace corvane {

namespace {

std::string here(SourceFileContext context = SourceFileContext::current()) {
    return context.function();
}

std::string lastName;

void note(SourceFileContext context = SourceFileContext::current()) {
    lastName = context.function();
}

struct Detached {
    struct promise_type {
        Detached get_return_object() { return {}; }

        std::suspend_never initial_suspend() { return {}; }

        std::suspend_never final_suspend() noexcept { return {}; }

        void return_void() {}

        void unhandled_exception() {}
    };
};

template <char c>
std::string characterArgument() {
    return here();
}

template <class T>
    requires(sizeof(T) < 64)
auto constrained(T, const std::vector<std::map<int, T>>& = {}) noexcept -> decltype(std::string()) {
    return here();
}

using Handler = void (*)(int);

Handler handlerOf(int) {
    note();
    return nullptr;
}

int (*functionPointer(std::function<void(int)>))(double) {
    note();
    return nullptr;
}

const char (&arrayReference())[2] {
    note();
    return "a";
}

decltype(auto) deduced() {
    return here();
}

Detached coroutine(std::string) {
    co_await std::suspend_never();
    note();
}

template <class T>
Detached coroutineTemplate(T) {
    const auto inner = [](int) -> Detached {
        note();
        co_return;
    };
    inner(1);
    co_return;
}

std::string operator""_site(const char*, std::size_t) {
    return here();
}

const auto lambdaOfNoFunction = [] { return here(); };

template <class T>
struct Loader {
    Loader() { note(); }

    ~Loader() { note(); }

    std::string load(const T&) const& noexcept { return here(); }

    static std::string shared() { return here(); }

    std::string operator()(int) { return here(); }

    std::string operator<(int) const { return here(); }

    std::string operator<<(int) { return here(); }

    std::string operator->*(int) { return here(); }

    std::string operator[](int) { return here(); }

    std::string operator,(int) { return here(); }

    explicit operator bool() const {
        note();
        return true;
    }

    explicit operator const char*() const {
        note();
        return "";
    }

    static void* operator new[](std::size_t size) {
        note();
        return ::operator new[](size);
    }

    static void operator delete[](void* memory) { ::operator delete[](memory); }

    std::string nestedLambda() {
        return [] { return [](auto) mutable { return here(); }('('); }();
    }

    std::string localClass() {
        struct Local {
            std::string inLocalClass() { return here(); }
        };

        return Local().inLocalClass();
    }
};

}  // namespace

// The signatures come from the compiler at hand, so every compiler that builds the tests is tested.
TEST(FunctionName, IsThePlainNameInTheSignatureOfTheCompilerAtHand) {
    EXPECT_EQ(here(), "TestBody()");
    EXPECT_EQ(characterArgument<'('>(), "characterArgument()");
    EXPECT_EQ(characterArgument<'>'>(), "characterArgument()");
    EXPECT_EQ(characterArgument<'\''>(), "characterArgument()");
    EXPECT_EQ(constrained(std::string()), "constrained()");
    EXPECT_EQ(deduced(), "deduced()");
    EXPECT_EQ(""_site, "operator\"\"_site()");

    handlerOf(1);
    EXPECT_EQ(lastName, "handlerOf()");
    functionPointer(nullptr);
    EXPECT_EQ(lastName, "functionPointer()");
    arrayReference();
    EXPECT_EQ(lastName, "arrayReference()");
}

TEST(FunctionName, OfAMemberLeavesOutItsClass) {
    using Nested = Loader<std::map<int, std::vector<int>>>;
    {
        Nested loader;
        EXPECT_EQ(lastName, "Loader()");
        EXPECT_EQ(loader.load({}), "load()");
        EXPECT_EQ(Nested::shared(), "shared()");
        EXPECT_EQ(loader(1), "operator()()");
        EXPECT_EQ(loader < 1, "operator<()");
        EXPECT_EQ(loader << 1, "operator<<()");
        EXPECT_EQ(loader->*1, "operator->*()");
        EXPECT_EQ(loader[1], "operator[]()");
        EXPECT_EQ((loader, 1), "operator,()");
        static_cast<void>(static_cast<bool>(loader));
        EXPECT_EQ(lastName, "operator bool()");
        static_cast<void>(static_cast<const char*>(loader));
        EXPECT_EQ(lastName, "operator const char*()");
        Nested::operator delete[](Nested::operator new[](1));
        EXPECT_EQ(lastName, "operator new[]()");
        EXPECT_EQ(loader.localClass(), "inLocalClass()");
    }
    EXPECT_EQ(lastName, "~Loader()");
}

TEST(FunctionName, OfALambdaOrCoroutineIsThatOfTheFunctionAroundIt) {
    EXPECT_EQ(Loader<int>().nestedLambda(), "nestedLambda()");
    EXPECT_EQ(lambdaOfNoFunction(), "lambda()");
    coroutine("");
    EXPECT_EQ(lastName, "coroutine()");
    coroutineTemplate(1);
    EXPECT_EQ(lastName, "coroutineTemplate()");
}

// What one compiler writes and the other does not; the names are then read alike by both.
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
        {"static void* S::operator new [](std::size_t)", "operator new[]()"},
        {"bool S::operator< <int>(T)::<lambda()>", "operator<()"},
        {"Task outer::(anonymous namespace)::load()", "load()"},
        {"void outer::{anonymous}::load(load()::_ZN5outer4loadEv.Frame*)", "load()"},
        {"auto S::lam()::(anonymous class)::operator()()::(anonymous class)::operator()() const", "lam()"},
        {"f<'\\''>()::<lambda(int)> mutable", "f()"},
    };

    for (const auto& [signature, name] : cases)
        EXPECT_EQ(plainFunctionName(signature), name) << signature;
}

TEST(FunctionName, GivesBackWhatIsNoSignature) {
    for (const std::string_view text :
         {"", "load", "f(", "a<b", "operator", "operator ", "f('", "((((", "<>", "::()"}) {
        EXPECT_EQ(plainFunctionName(text), text);
    }
}

}  // namespace corvane
