#pragma once

#include <Corvane/Platform/Dates/Date.hpp>

namespace corvane {

/// A model and when it was made, for whoever wants to keep the two together.
template <class Model>
struct ModelCache {
    Model model;
    Date creationDate;
};

}  // namespace corvane
