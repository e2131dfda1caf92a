// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/platform/observable.hpp>

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace mezalith::testing {

/// Writes each notification down as a line like "did rules kind 2 at 4+1 (6848)": when, key, for
/// list changes kind and range, context. Then runs its reaction, which may end the recorder.
struct ObservationRecorder : platform::Observer {
    std::vector<std::string> lines;
    std::function<void()> reaction;

    void observeValueForKey(const std::string& key, platform::Observable*,
                            const platform::Change& change, std::int64_t context) override {
        lines.push_back(describe(key, change) + " (" + std::to_string(context) + ")");
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
