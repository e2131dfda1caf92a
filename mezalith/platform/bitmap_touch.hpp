// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/platform/affine_transform.hpp>
#include <mezalith/platform/image.hpp>
#include <mezalith/platform/touch.hpp>

namespace mezalith::platform {

/// Whether the disc touches what of the bitmap is not transparent. `placement` takes the bitmap's
/// pixels, from its upper left corner, y down, to the device. A pixel is taken half a pixel larger
/// on every side within the picture, as far as it shines when pixels are smoothed.
MEZALITH_EXPORT bool touchesBitmap(const Bitmap& bitmap, const AffineTransform& placement,
                                   const Disc& disc);

}  // namespace mezalith::platform
