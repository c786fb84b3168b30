#pragma once

#include <Corvane/Export.hpp>

namespace corvane {

/// A page that an `AutorefreshUpdaterProtocol` asks to refresh itself.
class CORVANE_EXPORT AutoRefreshablePage {
  public:
    AutoRefreshablePage() = default;
    virtual ~AutoRefreshablePage() = default;
    AutoRefreshablePage(const AutoRefreshablePage&) = delete;
    AutoRefreshablePage& operator=(const AutoRefreshablePage&) = delete;

    /// Loads and shows what is current. Called on the thread that drives the updater, the main thread in practice.
    virtual void refreshPage() = 0;
};

}  // namespace corvane
