// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/geomagnetism/geomagnetic_field.hpp>

#include <memory>
#include <string>

namespace mezalith::app {

/// The model in the file at `path`, or the library's own when it is empty. Throws a host::Failure
/// when it cannot be read.
std::shared_ptr<const MzGeomagneticModel> readFieldModel(const std::string& path);

/// The field of the model on `date`. Throws a host::Failure when the model begins later.
MzGeomagneticField fieldOfModel(const MzGeomagneticModel& model, platform::Date date);

/// "model expired 2030", or nothing while it is valid.
std::string expiryOf(const MzGeomagneticModel& model, const MzGeomagneticField& field);

}  // namespace mezalith::app
