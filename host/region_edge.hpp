// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/geometry/primitives.hpp>
#include <mezalith/projection/projection_region.hpp>

#include <vector>

namespace mezalith::host {

/// The edge of a band or cap as a closed line around it, along which positions are counted, and
/// what of other lines lies within. It leads into a band's gaps and out again. A band may reach
/// several times around the globe; what is whole turns of it apart is then the same. Degrees.
class RegionEdge {
  public:
    /// `region` is not endless.
    explicit RegionEdge(const MzProjectionRegion& region);

    /// A piece of a segment.
    struct Step {
        MzPoint from, to;
        bool isInside;
    };

    /// The segment, straight in longitude and latitude, in pieces that lie inside or outside. In a
    /// band, the longitudes of those inside are the band's own.
    void addSteps(MzPoint p, MzPoint q, std::vector<Step>& steps) const;

    /// Whether a step may go on at `next` where the one before ended: at the same place, as far as
    /// that can be told, whole turns apart in a cap.
    bool goesOn(MzPoint end, MzPoint next) const;

    /// Where the nearest point of the edge lies along it, from 0 to `length()`.
    double positionOf(MzPoint point) const;
    MzPoint pointAt(double position) const;
    double length() const { return length_; }
    /// How often a band reaches around the globe, at least once.
    int turns() const { return turns_; }
    /// Adds the points of the edge, at most half a degree apart, between two positions; backwards
    /// when the second is less.
    void addPointsBetween(double from, double to, std::vector<MzPoint>& points) const;

  private:
    struct Vector {
        double x, y, z;
    };

    void addCorners();
    bool bandHolds(MzPoint p) const;
    void addBandSteps(MzPoint p, MzPoint q, std::vector<Step>& steps) const;
    void addCapSteps(MzPoint p, MzPoint q, std::vector<Step>& steps) const;
    bool capHolds(MzPoint p) const;
    double crossing(MzPoint p, MzPoint q, double inside, double outside) const;
    static Vector direction(MzPoint p);
    static double dot(Vector a, Vector b) { return a.x * b.x + a.y * b.y + a.z * b.z; }

    bool isCap_;
    int turns_;
    double west_, east_, south_, north_;         ///< of a band
    std::vector<MzProjectionRegion::Gap> gaps_;  ///< of a band, from west to east
    std::vector<MzPoint> corners_;  ///< of a band, once around from its south-west, which ends it
    std::vector<double> cornerPositions_;
    MzPoint centre_;
    Vector middle_, toEast_, toNorth_;  ///< of a cap: its centre and the directions there
    double cosine_, sine_;              ///< of its angle
    double length_;
    std::vector<double> marks_;  ///< positions of the points along it, ascending
};

}  // namespace mezalith::host
