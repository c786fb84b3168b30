#include <memory>

#include <gtest/gtest.h>

#include <Corvane/Networking/API/Private/RemoteExchange.hpp>
#include <Corvane/Platform/HTTP/URLError.hpp>

namespace corvane {
namespace {

const char* const url = "http://localhost/teams";

TEST(RemoteExchange, TakesEachStatusForWhatItIs) {
    struct Row {
        int status;
        std::optional<CommonAPIError> error;
    };

    using Error = CommonAPIError;
    for (const auto& [status, error] : std::initializer_list<Row>{
             {199, {}},
             {200, {}},
             {299, {}},
             {300, Error::redirection()},
             {302, Error::redirection()},
             {304, Error::notModified()},
             {399, Error::redirection()},
             {400, Error::clientFault(400)},
             {404, Error::clientFault(404)},
             {499, Error::clientFault(499)},
             {500, Error::serverFault(500)},
             {599, Error::serverFault(599)},
             {600, {}},
         }) {
        const HTTPURLResponse response(*URL::parse(url), status, "HTTP/1.1", {});
        const auto outcome = remoteOutcome(Data("[]"), &response, std::nullopt);
        EXPECT_EQ(outcome ? std::nullopt : std::optional(outcome.error()), error) << status;
    }
}

TEST(RemoteExchange, PutsAFailedTransferBeforeAMissingHeadAndThatBeforeTheStatus) {
    const HTTPURLResponse notFound(*URL::parse(url), 404, "HTTP/1.1", {});
    const PlatformError lost = makeURLError(URLError::networkConnectionLost);
    EXPECT_EQ(remoteOutcome({}, &notFound, lost).error(), CommonAPIError::urlSessionError(lost));
    EXPECT_EQ(remoteOutcome(Data("[]"), nullptr, {}).error(), CommonAPIError::invalidResponse());
}

TEST(RemoteExchange, PassesTheFieldsOnByteForByteAndKnowsThemByTheirExactNames) {
    const HTTPURLResponse response(*URL::parse(url), 200, "HTTP/1.1",
                                   {{"Last-Modified", "yesterday,  \xE9"}, {"date", "Fri, 15 Mar 2024 12:00:00 GMT"}});
    EXPECT_EQ(remoteOutcome(std::nullopt, &response, {}),
              (URLSessionAPIResponse{.data = Data(), .lastModified = "yesterday,  \xE9", .timeStamp = std::nullopt}));
}

}  // namespace
}  // namespace corvane
