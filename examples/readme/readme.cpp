#include <iostream>

#include <Corvane/Corvane.hpp>

int main(int argc, char** argv) {
    using namespace corvane;
    const auto request = SimpleHttpRequest::make({.url = URL::parse(argc > 1 ? argv[1] : "http://localhost/fixtures")});
    SimpleHttpManager::sharedInstance()->request(request, [](const SimpleHttpResponse& response) {
        asyncOnMain([response] {
            if (response.error()) std::cerr << response.error()->localizedDescription() << '\n';
            if (response.data()) std::cout << response.data()->text() << '\n';
            RunLoop::main().stop();
        });
    });
    RunLoop::main().run();
}
