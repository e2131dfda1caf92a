// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/export.hpp>
#include <mezalith/platform/image.hpp>

#include <cstddef>
#include <span>

namespace mezalith::platform {

/// How a camera was held, from 1 (upright) to 8: the "Orientation" in the Exif block of a JPEG file
/// (its APP1 segment, "Exif" included). 1 when the block does not say or is malformed.
/// Source: CIPA DC-008, Exif 2.32, sections 4.5 and 4.6.4.
MEZALITH_EXPORT int exifOrientation(std::span<const std::byte> segment);

/// The bitmap as it should be seen, for a picture stored in orientation 1 to 8; as it is for any
/// other number.
MEZALITH_EXPORT Bitmap uprightBitmap(Bitmap bitmap, int orientation);

}  // namespace mezalith::platform
