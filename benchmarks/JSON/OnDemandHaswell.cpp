#include "benchmarks/JSON/OnDemandReader.hpp"

Matchday readOnDemandHaswell(std::string_view padded) {
    return readByHand(padded);
}
