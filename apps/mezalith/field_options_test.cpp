// SPDX-License-Identifier: MIT
#include "apps/mezalith/field_options.hpp"

#include "host/failure_of.hpp"

#include <gtest/gtest.h>

namespace mezalith::app {
namespace {

TEST(FieldOptions, ReadTheLibrarysOwnModelOrAFile) {
    EXPECT_EQ(readFieldModel(""), MzGeomagneticModel::internationalReferenceField());
    const std::string file = MEZALITH_SOURCE_DIR "/data/geomag/WMM2015.COF";
    EXPECT_EQ(readFieldModel(file)->name(), "WMM-2015");
}

TEST(FieldOptions, SayWhyAFileCannotBeRead) {
    EXPECT_EQ(testing::failureOf([] { readFieldModel("/no/such/file"); }),
              "cannot read /no/such/file: No such file or directory");
}

TEST(FieldOptions, KeepToTheYearsOfTheModel) {
    const auto model = readFieldModel("");
    EXPECT_EQ(testing::failureOf([&] { fieldOfModel(*model, platform::startOfYear(1899)); }),
              "declination: model begins 1900");
    const auto field = fieldOfModel(*model, platform::startOfYear(2030));
    EXPECT_EQ(field.year(), 2030);
    EXPECT_EQ(expiryOf(*model, field), "");
    EXPECT_EQ(expiryOf(*model, fieldOfModel(*model, platform::startOfYear(2031))),
              "model expired 2030");
}

}  // namespace
}  // namespace mezalith::app
