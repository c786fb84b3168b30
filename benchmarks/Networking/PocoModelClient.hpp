#pragma once

#if CORVANE_PEER_POCO && __has_include(<rapidjson/reader.h>)
#define HAS_POCO_WITH_RAPIDJSON 1

#include <Poco/Net/HTTPClientSession.h>
#include <Poco/Net/HTTPRequest.h>
#include <Poco/Net/HTTPResponse.h>
#include <Poco/StreamCopier.h>

#include <cstdint>
#include <string>

#include "benchmarks/JSON/RapidJSONReader.hpp"

/// The structs by way of POCO's streams and RapidJSON's events, on the calling thread.
class PocoModelClient {
  public:
    inline static std::uint16_t port = 0;
    inline static std::string path;

    PocoModelClient() { session_.setKeepAlive(true); }

    Matchday get() {
        Poco::Net::HTTPRequest request(Poco::Net::HTTPRequest::HTTP_GET, path, Poco::Net::HTTPMessage::HTTP_1_1);
        session_.sendRequest(request);
        Poco::Net::HTTPResponse response;
        std::istream& stream = session_.receiveResponse(response);
        body_.clear();
        Poco::StreamCopier::copyToString(stream, body_);
        return readRapidJSON(body_);
    }

  private:
    Poco::Net::HTTPClientSession session_{"127.0.0.1", port};
    std::string body_;
};

#else
#define HAS_POCO_WITH_RAPIDJSON 0
#endif
