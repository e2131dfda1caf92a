// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/export.hpp>
#include <mezalith/platform/object.hpp>

#include <memory>

namespace mezalith {

class MzGeometry;

/// What an index is built over: something that has a geometry. Features that can be drawn are such.
class MEZALITH_EXPORT MzIndexable : public platform::Object {
  public:
    ~MzIndexable() override;

    /// In longitude and latitude; null is not indexed.
    virtual std::shared_ptr<MzGeometry> geometry() const = 0;
};

}  // namespace mezalith
