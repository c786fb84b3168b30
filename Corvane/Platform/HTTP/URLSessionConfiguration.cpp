#include <Corvane/Platform/HTTP/URLSessionConfiguration.hpp>

namespace corvane {

URLSessionConfiguration URLSessionConfiguration::defaultConfiguration() {
    return {};
}

URLSessionConfiguration URLSessionConfiguration::ephemeral() {
    URLSessionConfiguration configuration;
    configuration.storesCookies = false;
    return configuration;
}

}  // namespace corvane
