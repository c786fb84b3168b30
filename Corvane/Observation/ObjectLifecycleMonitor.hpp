#pragma once

#include <memory>
#include <vector>

#include <Corvane/Export.hpp>
#include <Corvane/Observation/WeakObjectWrapper.hpp>

namespace corvane {

/// A debugging aid that tells which objects outlive their screens:
///
///     ObjectLifecycleMonitor::add(page);             // where the page is made
///     ObjectLifecycleMonitor::printAliveObjects();   // where it should have gone
///
/// Objects are held weakly; one that was made together with its shared pointer keeps its memory, though not itself,
/// until it drops out of the list. No lock: for the main thread only.
class CORVANE_EXPORT ObjectLifecycleMonitor {
  public:
    ObjectLifecycleMonitor() = delete;

    /// Watches `object` from now on; one that is added twice is listed twice.
    template <class T>
    static void add(const std::shared_ptr<T>& object) {
        add(WeakObjectWrapper(object));
    }

    static void add(WeakObjectWrapper object);

    /// Writes the description of every object that is still there to standard output, in the order they were added, one
    /// a line, with blanks for line breaks of its own. Those that have gone drop out of the list.
    static void printAliveObjects();

    /// The list of the process.
    [[nodiscard]] static const std::vector<WeakObjectWrapper>& objects();
};

}  // namespace corvane
