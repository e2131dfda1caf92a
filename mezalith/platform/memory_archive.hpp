// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/platform/archiver.hpp>

#include <algorithm>
#include <deque>
#include <utility>
#include <vector>

namespace mezalith::platform {

/// An unkeyed archive in memory, for tests.
class MemoryArchiver : public Archiver {
  public:
    void encodeArray(std::span<const double> values) override {
        arrays.emplace_back(values.begin(), values.end());
    }

    std::deque<std::vector<double>> arrays;
};

/// Reads a MemoryArchiver's arrays, for tests.
class MemoryUnarchiver : public Unarchiver {
  public:
    explicit MemoryUnarchiver(std::deque<std::vector<double>> arrays)
        : arrays_(std::move(arrays)) {}

    bool decodeArray(std::span<double> values) override {
        if (arrays_.empty() || arrays_.front().size() != values.size()) return false;
        std::ranges::copy(arrays_.front(), values.begin());
        arrays_.pop_front();
        return true;
    }

  private:
    std::deque<std::vector<double>> arrays_;
};

}  // namespace mezalith::platform
