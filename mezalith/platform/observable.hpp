// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/export.hpp>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <set>
#include <string>
#include <string_view>

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

/// Receives notifications. An observer that vanishes is taken off by itself.
class MEZALITH_EXPORT Observer {
  public:
    Observer();
    Observer(const Observer&);
    Observer& operator=(const Observer&);
    virtual ~Observer();

    /// Called once before a change (only observers that asked for it) and once after it.
    virtual void observeValueForKey(const std::string& key, Observable* object,
                                    const Change& change, std::int64_t context) = 0;

  private:
    friend class Observable;
    std::shared_ptr<Observer*> life_;  ///< tells registrations when the observer is gone
};

/// Something whose keys can be watched. Observation is not copied with an object.
/// A key depends on others by `keyPathsForValuesAffectingValueForKey`: a change of one of those
/// notifies it too, inside the same will/did pair. Single-threaded.
class MEZALITH_EXPORT Observable {
  public:
    Observable();
    Observable(const Observable&);
    Observable& operator=(const Observable&);
    virtual ~Observable();

    /// Registers `observer` for `key` with a context that is handed back in each notification. The
    /// same observer may be registered several times, also with different contexts; each
    /// registration notifies. `prior` asks for the notification before the change as well.
    void addObserver(Observer* observer, std::string_view key, std::int64_t context,
                     bool prior = false);

    /// Takes off the latest registration of `observer` for `key`; with a context, the latest one
    /// with that context. Does nothing when there is none.
    void removeObserver(Observer* observer, std::string_view key);
    void removeObserver(Observer* observer, std::string_view key, std::int64_t context);

    /// Announce a change of the value under `key`, before and after it. Pairs nest.
    void willChangeValueForKey(std::string_view key);
    void didChangeValueForKey(std::string_view key);

    /// Announce a change of a list's members, before and after it.
    void willChange(ChangeKind kind, IndexRange indexes, std::string_view key);
    void didChange(ChangeKind kind, IndexRange indexes, std::string_view key);

    /// The keys whose changes are changes of `key` too; none unless overridden.
    virtual std::set<std::string> keyPathsForValuesAffectingValueForKey(
        const std::string& key) const;

  private:
    struct Registrations;
    std::unique_ptr<Registrations> registrations_;  ///< null while nobody observes

    void notify(std::string_view key, const Change& change);
};

}  // namespace mezalith::platform
