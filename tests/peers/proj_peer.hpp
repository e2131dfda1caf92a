// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/geometry/primitives.hpp>

#include <memory>
#include <string>

#include <proj.h>

namespace mezalith::test {

/// The projection library as a peer to compare with: longitude and latitude on WGS 84 to a plane.
class ProjPeer {
  public:
    explicit ProjPeer(const std::string& target)
        : context_(proj_context_create()),
          raw_(proj_create_crs_to_crs(context_.get(), "EPSG:4326", target.c_str(), nullptr)),
          operation_(proj_normalize_for_visualization(context_.get(), raw_.get())) {}

    bool isUsable() const { return operation_ != nullptr; }
    MzPoint forward(MzPoint p) const { return transformed(p, PJ_FWD); }
    MzPoint inverse(MzPoint p) const { return transformed(p, PJ_INV); }

  private:
    struct Release {
        void operator()(PJ_CONTEXT* context) const { proj_context_destroy(context); }
        void operator()(PJ* operation) const { proj_destroy(operation); }
    };

    MzPoint transformed(MzPoint p, PJ_DIRECTION direction) const {
        const PJ_COORD result = proj_trans(operation_.get(), direction, proj_coord(p.x, p.y, 0, 0));
        return {result.xy.x, result.xy.y};
    }

    std::unique_ptr<PJ_CONTEXT, Release> context_;
    std::unique_ptr<PJ, Release> raw_;
    std::unique_ptr<PJ, Release> operation_;
};

}  // namespace mezalith::test
