// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/export.hpp>

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <iterator>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

namespace mezalith::platform {

class Observable;

/// What happened to the value under a key.
enum class ChangeKind { Setting = 1, Insertion = 2, Removal = 3, Replacement = 4 };

/// A contiguous range of list positions.
struct IndexRange {
    std::size_t location = 0;
    std::size_t length = 0;
    friend bool operator==(const IndexRange&, const IndexRange&) = default;
};

/// One notification. `isPrior` is true for the one sent before the change.
struct Change {
    ChangeKind kind = ChangeKind::Setting;
    IndexRange indexes;  ///< list changes only
    bool isPrior = false;
};

/// Receives notifications. An observer that vanishes is taken off by itself; a copy of an observer
/// observes nothing.
class MEZALITH_EXPORT Observer {
  public:
    Observer() = default;
    Observer(const Observer&) {}
    Observer& operator=(const Observer&) { return *this; }
    virtual ~Observer();

    /// Called once before a change (only for registrations that asked for it) and once after it.
    /// May add and remove registrations, and may end the life of `object` or of the observer.
    virtual void observeValueForKey(const std::string& key, Observable* object,
                                    const Change& change, std::int64_t context) = 0;

  private:
    friend class Observable;
    std::shared_ptr<void> life_;  ///< made by the first registration, ends with the observer
};

/// Something whose keys can be watched. Observation is not copied with an object, and an object
/// that nobody observes allocates nothing for it. Single-threaded.
///
/// A key depends on others by `keyPathsForValuesAffectingValueForKey`: a change of one of those, at
/// any remove, is announced for it too, as a setting inside the same will/did pair. Registrations
/// are notified in the order they were made, each once. Those made during a pair are not told of
/// it.
class MEZALITH_EXPORT Observable {
  public:
    Observable() = default;
    Observable(const Observable&) {}
    Observable& operator=(const Observable&) { return *this; }
    virtual ~Observable();

    /// Registers `observer` for `key` with a context that is handed back in each notification. The
    /// same observer may be registered several times, also with different contexts; each
    /// registration notifies. `prior` asks for the notification before the change as well. Neither
    /// side owns the other. Does nothing for a null observer.
    void addObserver(Observer* observer, std::string_view key, std::int64_t context,
                     bool prior = false);

    /// Takes off the latest registration of `observer` for `key`; with a context, the latest one
    /// with that context. Does nothing when there is none.
    void removeObserver(Observer* observer, std::string_view key);
    void removeObserver(Observer* observer, std::string_view key, std::int64_t context);

    /// Announce a change of the value under `key`, before and after it. Pairs nest; a did without
    /// its will notifies nobody.
    void willChangeValueForKey(std::string_view key);
    void didChangeValueForKey(std::string_view key);

    /// Announce a change of a list's members, before and after it.
    void willChange(ChangeKind kind, IndexRange indexes, std::string_view key);
    void didChange(ChangeKind kind, IndexRange indexes, std::string_view key);

    /// The keys whose changes are changes of `key` too; none unless overridden. They may depend on
    /// each other in circles.
    virtual std::set<std::string> keyPathsForValuesAffectingValueForKey(
        const std::string& key) const;

  protected:
    /// Runs `change` and announces it for `keys`: before it in this order, after it in reverse. All
    /// that is left of it is dropped when an observer ends the object's life.
    template <typename Action>
    void changeValues(std::initializer_list<std::string_view> keys, Action change) {
        const std::shared_ptr<const bool> ended = end();
        for (const std::string_view key : keys) {
            if (!*ended) willChangeValueForKey(key);
        }
        if (!*ended) change();
        for (auto key = std::rbegin(keys); key != std::rend(keys); ++key) {
            if (!*ended) didChangeValueForKey(*key);
        }
    }

    /// The same for a change of the members of the list under `key`.
    template <typename Action>
    void changeMembers(ChangeKind kind, IndexRange indexes, std::string_view key, Action change) {
        const std::shared_ptr<const bool> ended = end();
        willChange(kind, indexes, key);
        if (!*ended) change();
        if (!*ended) didChange(kind, indexes, key);
    }

    /// Sets a property's field and announces its key, also when the value stays the same.
    template <typename Value>
    void setProperty(std::string_view key, Value& field, std::type_identity_t<Value> value) {
        changeValues({key}, [&] { field = std::move(value); });
    }

  private:
    struct Registrations;
    std::shared_ptr<Registrations> registrations_;  ///< null until somebody observes

    /// Becomes YES when the object ends, for those who outlive it.
    std::shared_ptr<const bool> end() const;
    bool isObserved() const;
    void remove(const Observer* observer, std::string_view key,
                std::optional<std::int64_t> context);
    void notify(std::string_view key, const Change& change, std::uint64_t limit);
    bool isAffected(const std::string& key, std::string_view by) const;
};

}  // namespace mezalith::platform
