#include <Corvane/DomainSpecific/Tessaly/Networking/DataLoadOptions.hpp>

namespace corvane {

constinit DataLoadOptions DataLoadOptions::IgnoreDates{1};
constinit DataLoadOptions DataLoadOptions::IgnoreCache{2};
constinit DataLoadOptions DataLoadOptions::TimeInUTC{4};

}  // namespace corvane
