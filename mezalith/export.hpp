// SPDX-License-Identifier: MIT
#pragma once

/// Marks what a shared build of the library shows to its users; all else stays hidden.
#define MEZALITH_EXPORT __attribute__((visibility("default")))
