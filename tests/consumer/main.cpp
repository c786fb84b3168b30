#include <Corvane/Platform/FatalError.hpp>

int main(int argc, char**) {
    if (argc > 1) corvane::fatalError("takes no arguments");
}
