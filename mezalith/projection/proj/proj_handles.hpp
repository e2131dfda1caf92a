// SPDX-License-Identifier: MIT
#pragma once

#include <memory>

#include <proj.h>

namespace mezalith::detail {

struct ReleaseContext {
    void operator()(PJ_CONTEXT* context) const { proj_context_destroy(context); }
};
struct ReleaseObject {
    void operator()(PJ* object) const { proj_destroy(object); }
};

using ProjContext = std::unique_ptr<PJ_CONTEXT, ReleaseContext>;
using ProjObject = std::unique_ptr<PJ, ReleaseObject>;

}  // namespace mezalith::detail
