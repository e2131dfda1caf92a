// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/clipping/clipping_region.hpp>
#include <mezalith/export.hpp>
#include <mezalith/geometry/records.hpp>

#include <cstddef>
#include <cstdint>

namespace mezalith {

// The clippers cut a record in projected units against a region and write what is left, in view
// points, into the destination's array. They drop points closer than the region's `minSpacing`
// (Manhattan distance) to the last point kept. The destination's array must hold as many points as
// the functions below say for the source's count; nothing is allocated. A source without points (or
// with a null array) or a null region sets the destination's count to 0 and reads nothing.
//
// What is said to be settled holds for regions that are not `exact`; exact_clipping.hpp tells what
// the others get.

/// Room that a destination needs for a source of `count` points, whichever way the region clips;
/// never under 1.
MEZALITH_EXPORT std::size_t MzClippedMultiPointCapacity(std::uint32_t count);
MEZALITH_EXPORT std::size_t MzClippedLineStringCapacity(std::uint32_t count);
MEZALITH_EXPORT std::size_t MzClippedLinearRingCapacity(std::uint32_t count);

/// The points inside the region.
MEZALITH_EXPORT void MzClipMultiPoint(const MzMultiPoint* source, MzMultiPoint* destination,
                                      const MzClippingRegion* region);

/// One polyline.
/// Settled: a segment that only touches a corner is left out with its end, an exit and the next
/// entry are joined directly, and the two crossings of a segment that passes through come in the
/// order of the edge tables, not of travel.
MEZALITH_EXPORT void MzClipLineString(const MzLineString* source, MzLineString* destination,
                                      const MzClippingRegion* region);
MEZALITH_EXPORT void MzClipLineString(const MzMultiPoint* source, MzMultiPoint* destination,
                                      const MzClippingRegion* region);
MEZALITH_EXPORT void MzClipLineString(const MzMultiPoint* source, MzLineString* destination,
                                      const MzClippingRegion* region);

/// One outline, closed along the border by the region's corners. The source's repeated last point
/// closes it.
/// Settled: crossings in the order of the edge tables, as above; a ring may cross itself along the
/// border, and begins and ends there apart when its first point is outside.
MEZALITH_EXPORT void MzClipLinearRing(const MzLinearRing* source, MzLinearRing* destination,
                                      const MzClippingRegion* region);

/// For the corner codes 5, 6, 9 and 10 appends that corner of the region in view points; any other
/// code does nothing. The array has room for one more point.
MEZALITH_EXPORT void MzAddTurningPointForCode(MzLinearRing* destination, std::int32_t code,
                                              const MzClippingRegion* region);

}  // namespace mezalith
