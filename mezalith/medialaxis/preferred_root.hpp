// SPDX-License-Identifier: MIT
#pragma once

namespace mezalith::detail {

/// Which of two roots counts: the smallest positive one, else the negative one closest to zero.
/// True for the first; equal ones and those that are not finite give the second.
inline bool prefersFirstRoot(double root1, double root2) {
    if (root2 < 0 && 0 < root1) return true;
    if (root1 < 0 && root2 < 0) return root1 > root2;
    return root1 > 0 && root2 > 0 && root2 > root1;
}

}  // namespace mezalith::detail
