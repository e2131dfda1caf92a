// SPDX-License-Identifier: MIT
#pragma once

#include "host/bounding_box.hpp"
#include "host/zero_lines.hpp"
#include <mezalith/geomagnetism/geomagnetic_field.hpp>
#include <mezalith/geometry/primitives.hpp>

#include <vector>

namespace mezalith::host {

/// Lines of equal declination in an area. Not the angle itself is followed but the field's part
/// across the direction that is asked for, which is smooth everywhere: neither the jump from 180 to
/// -180 degrees nor the magnetic poles, where all lines meet, make any that are not there.
class IsogonicLines {
  public:
    /// `area` in degrees; of the globe's latitudes and, once around it, of its longitudes no more
    /// than there are. Sampled 720 times across its longer side.
    IsogonicLines(const MzGeomagneticField& field, const BoundingBox& area);

    /// The lines of a declination, longitudes and latitudes, degrees.
    std::vector<std::vector<MzPoint>> linesOf(double declination);

    /// Least and greatest declination in the area, degrees; 0 and 0 when there is none.
    double least() const { return least_; }
    double greatest() const { return greatest_; }

  private:
    std::vector<MzMagneticElements> elements_;
    SampledGrid grid_;
    double least_ = 0;
    double greatest_ = 0;
};

}  // namespace mezalith::host
