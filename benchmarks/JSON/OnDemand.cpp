#include "benchmarks/JSON/OnDemandReader.hpp"

Matchday readOnDemand(std::string_view padded) {
    return readByHand(padded);
}
