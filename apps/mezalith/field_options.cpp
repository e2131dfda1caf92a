// SPDX-License-Identifier: MIT
#include "apps/mezalith/field_options.hpp"

#include "host/failure.hpp"
#include <mezalith/platform/number_text.hpp>
#include <mezalith/platform/resource_bundle.hpp>

namespace mezalith::app {
namespace {

std::shared_ptr<const MzGeomagneticModel> readReferenceField() {
    if (auto model = MzGeomagneticModel::internationalReferenceField()) return model;
    const auto path = platform::ResourceBundle::library().pathForResource("IGRF14.shc");
    if (!path) throw host::Failure("IGRF14.shc", "it is not among the library's resources");
    return readFieldModel(*path);
}

}  // namespace

using Validity = MzGeomagneticModel::Validity;

std::shared_ptr<const MzGeomagneticModel> readFieldModel(const std::string& path) {
    if (path.empty()) return readReferenceField();
    std::string why;
    auto model = MzGeomagneticModel::modelWithContentsOfFile(path, &why);
    if (model == nullptr) throw host::Failure("cannot read " + path, why);
    return model;
}

MzGeomagneticField fieldOfModel(const MzGeomagneticModel& model, platform::Date date) {
    MzGeomagneticField field(model, date);
    if (model.validityInYear(field.year()) == Validity::NotYet) {
        throw host::Failure("declination",
                            "model begins " + platform::shortestText(model.firstYear()));
    }
    return field;
}

std::string expiryOf(const MzGeomagneticModel& model, const MzGeomagneticField& field) {
    if (model.validityInYear(field.year()) != Validity::Expired) return {};
    return "model expired " + platform::shortestText(model.lastYear());
}

}  // namespace mezalith::app
