// SPDX-License-Identifier: MIT

#include <cstdlib>

namespace {

// Linked into every test program: property tests draw the same values in every run, so that a
// failure repeats. RapidCheck prints the seed; set RC_PARAMS to try others.
// NOLINTNEXTLINE(concurrency-mt-unsafe): no thread runs before main
[[maybe_unused]] const int kSeedIsFixed = setenv("RC_PARAMS", "seed=20240229", /*overwrite=*/0);

}  // namespace
