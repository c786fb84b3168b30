#pragma once

#include <any>
#include <concepts>
#include <functional>
#include <memory>
#include <type_traits>

#include <Corvane/Observation/KeyPathBatchObservableOptions.hpp>
#include <Corvane/Observation/ObservableType.hpp>

namespace corvane {

/// A type that can be observed, such as `Observable<int>`.
template <class Property>
concept ObservableProperty = requires { typename Property::ValueType; } &&
                             std::derived_from<Property, ObservableType<typename Property::ValueType>>;

/// The way to any property of a `Root`: a pointer to a data member, of `Root` or a class that it derives from, with the
/// member's type left out.
///
///     const std::vector<KeyPath<Match>> shown{&Match::score, &Match::title};
///
/// A value. Two are equal that lead to the same member.
template <class Root>
class KeyPath {
  public:
    /// Gets a boxed copy of a property's value.
    using Callback = std::shared_ptr<const std::function<void(const std::any& value)>>;

    template <class Property, class Owner>
        requires std::derived_from<Root, Owner> && std::is_object_v<Property>
    KeyPath(Property Owner::* member) noexcept  // NOLINT(google-explicit-constructor)
        : member_(reinterpret_cast<AnyMember>(
              const_cast<std::remove_cv_t<Property> Root::*>(static_cast<Property Root::*>(member)))),
          operations_(&operations<Property>) {}

    /// Registers on the property if it can be observed, and does nothing otherwise.
    void addObserver(Root& root, const ObserverReference& observer, const KeyPathBatchObservableOptions& options,
                     const Callback& callback) const {
        operations_->add(root, member_, observer, options, callback);
    }

    /// Removes the observer from the property if it can be observed, and does nothing otherwise.
    void removeObserver(Root& root, const ObserverReference& observer) const {
        operations_->remove(root, member_, observer);
    }

    friend bool operator==(const KeyPath& a, const KeyPath& b) noexcept = default;

  private:
    /// Stands for a member of any type; only ever cast back to where it came from.
    using AnyMember = char Root::*;

    struct Operations {
        void (*add)(Root& root, AnyMember member, const ObserverReference& observer,
                    const KeyPathBatchObservableOptions& options, const Callback& callback);
        void (*remove)(Root& root, AnyMember member, const ObserverReference& observer);
    };

    template <class Property>
    static void add([[maybe_unused]] Root& root, [[maybe_unused]] AnyMember member,
                    [[maybe_unused]] const ObserverReference& observer,
                    [[maybe_unused]] const KeyPathBatchObservableOptions& options,
                    [[maybe_unused]] const Callback& callback) {
        if constexpr (ObservableProperty<Property>) {
            using Value = typename Property::ValueType;
            ObservableType<Value>& observable = root.*reinterpret_cast<Property Root::*>(member);
            observable.addObserver(observer, options.removeIfExists, options.events,
                                   [callback](const Value& value, ObservableOption) { (*callback)(value); });
        }
    }

    template <class Property>
    static void remove([[maybe_unused]] Root& root, [[maybe_unused]] AnyMember member,
                       [[maybe_unused]] const ObserverReference& observer) {
        if constexpr (ObservableProperty<Property>) {
            (root.*reinterpret_cast<Property Root::*>(member)).removeObserver(observer);
        }
    }

    template <class Property>
    static constexpr Operations operations{&add<Property>, &remove<Property>};

    AnyMember member_;
    const Operations* operations_;
};

}  // namespace corvane
