// SPDX-License-Identifier: MIT
#include "mezalith/projection/proj/projection_gaps.hpp"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace mezalith::detail {
namespace {

/// The parallel, on either hemisphere, where gaps are looked for, and longitudes looked at;
/// degrees.
constexpr double kLookedAt = 80;
constexpr int kLooks = 360;

/// Leaps, in shares of the map's width: those that are looked into, and the least that is one.
constexpr double kNotable = 0.01;
constexpr double kLeast = 1e-9;
constexpr int kHalvings = 50;

/// Degrees to either side of a meridian between which a gap must leap.
constexpr double kSide = 1e-9;

/// Looks for the gaps of one hemisphere.
class GapSearch {
  public:
    GapSearch(const ProjectPoints& project, const MzProjectionRegion& band, bool isNorth)
        : project_(project),
          band_(band),
          isNorth_(isNorth),
          width_(distance({band.centre.x - band.reach, 0}, {band.centre.x + band.reach, 0})) {}

    void addGaps(std::vector<MzProjectionRegion::Gap>& gaps) const {
        const double west = band_.centre.x - band_.reach, step = 2 * band_.reach / kLooks;
        const double latitude = isNorth_ ? kLookedAt : -kLookedAt;
        std::vector<MzPoint> plane;
        for (int i = 0; i <= kLooks; ++i) plane.push_back({west + i * step, latitude});
        project_(plane);
        for (int i = 1; i <= kLooks; ++i) {
            const MzPoint p = plane[static_cast<std::size_t>(i - 1)];
            const MzPoint q = plane[static_cast<std::size_t>(i)];
            if (!(std::hypot(q.x - p.x, q.y - p.y) > kNotable * width_)) continue;
            const double meridian = leapBetween(west + (i - 1) * step, west + i * step, latitude);
            if (leapsAt(meridian, latitude, kNotable)) {
                gaps.push_back({meridian, tipOf(meridian, latitude), isNorth_});
            }
        }
    }

  private:
    double distance(MzPoint a, MzPoint b) const {
        std::vector<MzPoint> ends{a, b};
        project_(ends);
        return std::hypot(ends[1].x - ends[0].x, ends[1].y - ends[0].y);
    }

    bool leapsAt(double meridian, double latitude, double share) const {
        return distance({meridian - kSide, latitude}, {meridian + kSide, latitude}) >
               share * width_;
    }

    double leapBetween(double west, double east, double latitude) const {
        for (int i = 0; i < kHalvings; ++i) {
            const double middle = (west + east) / 2;
            const bool isWest = distance({west, latitude}, {middle, latitude}) >
                                distance({middle, latitude}, {east, latitude});
            (isWest ? east : west) = middle;
        }
        return (west + east) / 2;
    }

    /// The latitude nearest to the equator from which on the meridian leaps.
    double tipOf(double meridian, double latitude) const {
        double whole = 0, apart = latitude;
        for (int i = 0; i < kHalvings; ++i) {
            const double middle = (whole + apart) / 2;
            (leapsAt(meridian, middle, kLeast) ? apart : whole) = middle;
        }
        return whole;
    }

    const ProjectPoints& project_;
    const MzProjectionRegion& band_;
    bool isNorth_;
    double width_;
};

}  // namespace

std::vector<MzProjectionRegion::Gap> gapsOf(const ProjectPoints& project,
                                            const MzProjectionRegion& band) {
    std::vector<MzProjectionRegion::Gap> gaps;
    for (const bool isNorth : {false, true}) GapSearch(project, band, isNorth).addGaps(gaps);
    return gaps;
}

}  // namespace mezalith::detail
