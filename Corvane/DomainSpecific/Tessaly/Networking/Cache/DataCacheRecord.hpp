#pragma once

#include <optional>
#include <string>

#include <Corvane/Platform/Data.hpp>
#include <Corvane/Platform/Dates/Date.hpp>
#include <Corvane/Platform/JSON/DataCoding.hpp>

namespace corvane {

/// A downloaded body as a `DataCache` keeps it. In JSON it is a dictionary with the keys "data" (Base64), "date"
/// (seconds since 1970) and, when there is one, "lastModified".
struct DataCacheRecord {
    Data data;
    /// When the record was stored.
    Date date;
    /// The server's validator, byte for byte as its "Last-Modified" had it.
    std::optional<std::string> lastModified;

    friend bool operator==(const DataCacheRecord&, const DataCacheRecord&) = default;
};

}  // namespace corvane
