// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/platform/observable.hpp>

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace mezalith::testing {

/// Writes each notification down as a line like "did rules kind 2 at 4+1 (6848)": when, key, for
/// list changes kind and range, context unless it is 0. Then runs its reaction, which may end the
/// recorder.
struct ObservationRecorder : platform::Observer {
    std::vector<std::string> lines;
    std::function<void()> reaction;

    /// Registers for each of the keys with context 0, also before their changes.
    void observe(platform::Observable& object, const std::vector<std::string>& keys) {
        for (const std::string& key : keys) object.addObserver(this, key, 0, true);
    }

    void observeValueForKey(const std::string& key, platform::Observable*,
                            const platform::Change& change, std::int64_t context) override {
        const std::string suffix = context != 0 ? " (" + std::to_string(context) + ")" : "";
        lines.push_back(describe(key, change) + suffix);
        if (const std::function<void()> run = reaction) run();
    }

  private:
    static std::string describe(const std::string& key, const platform::Change& change) {
        const std::string line = (change.isPrior ? "will " : "did ") + key;
        if (change.kind == platform::ChangeKind::Setting) return line;
        return line + " kind " + std::to_string(static_cast<int>(change.kind)) + " at " +
               std::to_string(change.indexes.location) + "+" +
               std::to_string(change.indexes.length);
    }
};

}  // namespace mezalith::testing
