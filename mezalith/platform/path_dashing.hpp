// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/export.hpp>
#include <mezalith/platform/path_cutting.hpp>

#include <span>
#include <vector>

namespace mezalith::platform {

/// Alternating painted and unpainted lengths, an even number of them with a positive sum, none
/// longer than `longestDash`; or none at all for a solid line. 0 <= phase < period.
struct DashPattern {
    double phase = 0;
    std::vector<double> lengths;

    bool isSolid() const { return lengths.empty(); }
};

/// Longer than any line that a port draws.
inline constexpr double longestDash = 16777216;

/// The pattern of these lengths, each times `scale` (positive). A list of odd length is repeated.
/// Negative and non-finite lengths, and zeros only, make it solid. A phase that is not finite
/// counts as 0. What is painted within `longestDash` of the start is kept when lengths are cut.
MEZALITH_EXPORT DashPattern makeDashPattern(double phase, std::span<const double> lengths,
                                            double scale);

/// The sum of all lengths.
MEZALITH_EXPORT double dashPeriod(const DashPattern& pattern);

/// The painted pieces of `lines` that touch `box`, as a path of open subpaths; pieces outside are
/// skipped without being walked, and the phase is right behind them. Lengths are measured in
/// device units. The pattern begins anew with each subpath; where a closed one begins and ends
/// painted, the two pieces are one. The pattern must not be solid.
MEZALITH_EXPORT DevicePath dashedPath(std::span<const DevicePolyline> lines,
                                      const DashPattern& pattern, const DeviceBox& box);

}  // namespace mezalith::platform
