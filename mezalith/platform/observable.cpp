// SPDX-License-Identifier: MIT
#include <mezalith/platform/observable.hpp>

#include <algorithm>
#include <vector>

namespace mezalith::platform {

namespace {

struct Registration {
    std::uint64_t serial;
    Observer* observer;  ///< valid while `life` has not expired
    std::weak_ptr<void> life;
    std::string key;
    std::int64_t context;
    bool prior;
};

/// A will whose did has not come yet.
struct OpenChange {
    std::string key;
    std::uint64_t limit;  ///< serial of the first registration that came too late
};

}  // namespace

struct Observable::Registrations {
    std::vector<Registration> list;  ///< by growing serial
    std::vector<OpenChange> open;
    std::uint64_t nextSerial = 0;
    bool isEnded = false;

    /// The first registration at or after `serial` and before `limit`, or null.
    const Registration* next(std::uint64_t serial, std::uint64_t limit) const {
        const auto found = std::ranges::lower_bound(list, serial, {}, &Registration::serial);
        return found != list.end() && found->serial < limit ? &*found : nullptr;
    }
};

Observer::~Observer() = default;

Observable::~Observable() {
    if (!registrations_) return;
    // A notification under way holds on to the registrations: it finds none left.
    registrations_->list.clear();
    registrations_->isEnded = true;
}

std::shared_ptr<const bool> Observable::end() const {
    // Nobody who could end it is told of anything.
    static constexpr bool never = false;
    if (!isObserved()) return {std::shared_ptr<void>(), &never};
    return {registrations_, &registrations_->isEnded};
}

bool Observable::isObserved() const { return registrations_ && !registrations_->list.empty(); }

void Observable::addObserver(Observer* observer, std::string_view key, std::int64_t context,
                             bool prior) {
    if (observer == nullptr) return;
    if (!observer->life_) observer->life_ = std::make_shared<char>();
    if (!registrations_) registrations_ = std::make_shared<Registrations>();
    Registrations& all = *registrations_;
    std::erase_if(all.list, [](const Registration& r) { return r.life.expired(); });
    all.list.push_back(
        {all.nextSerial++, observer, observer->life_, std::string(key), context, prior});
}

void Observable::removeObserver(Observer* observer, std::string_view key) {
    remove(observer, key, std::nullopt);
}

void Observable::removeObserver(Observer* observer, std::string_view key, std::int64_t context) {
    remove(observer, key, context);
}

void Observable::remove(const Observer* observer, std::string_view key,
                        std::optional<std::int64_t> context) {
    if (!registrations_) return;
    std::vector<Registration>& list = registrations_->list;
    const auto found = std::find_if(list.rbegin(), list.rend(), [&](const Registration& r) {
        return r.observer == observer && r.key == key && (!context || r.context == *context);
    });
    if (found != list.rend()) list.erase(std::next(found).base());
}

void Observable::willChangeValueForKey(std::string_view key) {
    willChange(ChangeKind::Setting, {}, key);
}

void Observable::didChangeValueForKey(std::string_view key) {
    didChange(ChangeKind::Setting, {}, key);
}

void Observable::willChange(ChangeKind kind, IndexRange indexes, std::string_view key) {
    if (!isObserved()) return;
    const std::uint64_t limit = registrations_->nextSerial;
    registrations_->open.push_back({std::string(key), limit});
    notify(key, {kind, indexes, true}, limit);
}

void Observable::didChange(ChangeKind kind, IndexRange indexes, std::string_view key) {
    if (!registrations_) return;
    std::vector<OpenChange>& open = registrations_->open;
    const auto will = std::find_if(open.rbegin(), open.rend(),
                                   [&](const OpenChange& change) { return change.key == key; });
    if (will == open.rend()) return;
    const std::uint64_t limit = will->limit;
    open.erase(std::next(will).base());
    notify(key, {kind, indexes, false}, limit);
}

void Observable::notify(std::string_view key, const Change& change, std::uint64_t limit) {
    // Everything may change in a notification: the registrations, and whether this object lives.
    const std::shared_ptr<Registrations> all = registrations_;
    std::uint64_t serial = 0;
    while (const Registration* next = all->next(serial, limit)) {
        serial = next->serial + 1;
        if (next->life.expired() || (change.isPrior && !next->prior)) continue;
        const bool itself = next->key == key;
        if (!itself && !isAffected(next->key, key)) continue;
        const Registration told = *next;
        const Change asSetting{ChangeKind::Setting, {}, change.isPrior};
        told.observer->observeValueForKey(told.key, this, itself ? change : asSetting,
                                          told.context);
    }
}

bool Observable::isAffected(const std::string& key, std::string_view by) const {
    std::set<std::string> known{key};
    std::vector<std::string> pending{key};
    while (!pending.empty()) {
        const std::string current = std::move(pending.back());
        pending.pop_back();
        for (const std::string& path : keyPathsForValuesAffectingValueForKey(current)) {
            if (path == by) return true;
            if (known.insert(path).second) pending.push_back(path);
        }
    }
    return false;
}

std::set<std::string> Observable::keyPathsForValuesAffectingValueForKey(const std::string&) const {
    return {};
}

}  // namespace mezalith::platform
