#pragma once

#include <functional>
#include <initializer_list>
#include <memory>
#include <utility>
#include <vector>

#include <Corvane/Observation/LastChangeDebouncers.hpp>
#include <Corvane/Observation/Observable.hpp>

namespace corvane {

/// Has `closure` called on the main thread, once, one second after the last change among `observables`:
///
///     addOnLastChangeObserver({page->home, page->away}, page, [=] { page->redraw(); });
///
/// A change within that second starts it over. All observables that one object observes in this way, through one call
/// or several, share one delay, and the closure given with the latest change is the one that is called. The
/// registrations come beside those the observer has already.
///
/// The observer is held weakly, and changes that come once it has gone are ignored; what has been waiting by then is
/// still called. Removing the observer from one observable leaves what is waiting and the registrations on the others
/// as they are; their next change starts a delay of its own. For the main thread only.
template <class T>
void addOnLastChangeObserver(const std::vector<Observable<T>>& observables, const ObserverReference& observer,
                             std::function<void()> closure) {
    const auto shared = std::make_shared<const std::function<void()>>(std::move(closure));
    for (Observable<T> observable : observables) {
        observable.addObserver(observer, false, ObservableOption::changed,
                               [weak = observer.weak(), shared](const T&, ObservableOption) {
                                   const auto object = weak.lock();
                                   if (object == nullptr) return;
                                   detail::LastChangeDebouncers::shared().debounce(object, shared);
                               });
    }
}

template <class T>
void addOnLastChangeObserver(std::initializer_list<Observable<T>> observables, const ObserverReference& observer,
                             std::function<void()> closure) {
    addOnLastChangeObserver(std::vector<Observable<T>>(observables), observer, std::move(closure));
}

}  // namespace corvane
