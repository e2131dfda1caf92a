// SPDX-License-Identifier: MIT
#pragma once

#include "host/failure.hpp"

#include <string>

namespace mezalith::testing {

/// What the Failure says that `work` ends with; "no failure" when it ends well.
template <typename Work>
std::string failureOf(Work work) {
    try {
        work();
    } catch (const host::Failure& failure) {
        return failure.what();
    }
    return "no failure";
}

}  // namespace mezalith::testing
