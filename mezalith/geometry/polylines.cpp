// SPDX-License-Identifier: MIT
#include <mezalith/geometry/polylines.hpp>

namespace mezalith {

std::shared_ptr<MzMultiPointGeometry> MzPolylineOfLineString(const MzLineString& line) {
    return MzMultiPointGeometry::initWithMultiPoint({line.count, line.points});
}

std::vector<std::shared_ptr<MzMultiPointGeometry>> MzPolylinesOfMultiLineString(
    const MzMultiLineString& lines) {
    std::vector<std::shared_ptr<MzMultiPointGeometry>> polylines;
    polylines.reserve(lineStringsOf(&lines).size());
    for (const MzLineString& line : lineStringsOf(&lines)) {
        polylines.push_back(MzPolylineOfLineString(line));
    }
    return polylines;
}

}  // namespace mezalith
