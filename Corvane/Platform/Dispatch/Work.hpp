#pragma once

#include <Corvane/Platform/UniqueFunction.hpp>

namespace corvane {

/// A block of work on its way to a queue or run loop: run at most once, on the thread that the queue chooses, and
/// destroyed there. A callable of up to 96 bytes is queued without an allocation of its own. It must not throw:
/// an exception that leaves it ends the process.
using Work = UniqueFunction<void(), 96>;

}  // namespace corvane
