// SPDX-License-Identifier: MIT
#include "host/feature.hpp"

#include <mezalith/geometry/point_geometry.hpp>
#include <mezalith/style/style.hpp>

#include <gtest/gtest.h>

namespace mezalith::host {
namespace {

std::shared_ptr<Feature> feature(platform::Dictionary attributes) {
    const auto record =
        std::make_shared<const FeatureRecord>(FeatureRecord{7, "places", std::move(attributes)});
    return std::make_shared<Feature>(record,
                                     Part{Form::Points, MzPointGeometry::initWithPoint({3, 4})});
}

TEST(Feature, TellsWhatItsRecordHolds) {
    const auto oslo = feature({{"NAME", std::string("Oslo")}, {"pop", std::int64_t{580000}}});
    EXPECT_EQ(oslo->featureName(), "Oslo");
    EXPECT_EQ(oslo->featureDescription(), "places 7");
    EXPECT_EQ(oslo->kind(), "places");
    EXPECT_EQ(oslo->objectOwner(), nullptr);
    EXPECT_TRUE(oslo->allowsInteraction());
    EXPECT_EQ(oslo->propertiesByName().size(), 2u);
    EXPECT_EQ(oslo->form(), Form::Points);
    EXPECT_EQ(oslo->geometry()->geometryType(), 1u);
}

TEST(Feature, IsCalledByItsNumberWithoutAName) {
    EXPECT_EQ(feature({})->featureName(), "places 7");
    EXPECT_EQ(feature({{"name", std::monostate{}}})->featureName(), "places 7");
    EXPECT_EQ(feature({{"surname", std::string("x")}})->featureName(), "places 7");
}

TEST(Feature, LendsPredicatesItsTexts) {
    const auto oslo = feature({{"Name", std::string("Oslo")}, {"pop", std::int64_t{580000}}});
    using platform::KeyedValue;
    EXPECT_EQ(oslo->valueForKey("kind"), KeyedValue(std::string_view("places")));
    EXPECT_EQ(oslo->valueForKey("featureName"), KeyedValue(std::string_view("Oslo")));
    EXPECT_EQ(oslo->valueForKey("featureDescription"), KeyedValue(std::string("places 7")));
    EXPECT_EQ(oslo->valueForKey("pop"), KeyedValue(std::int64_t{580000}));
    EXPECT_EQ(feature({})->valueForKey("featureName"), KeyedValue(std::string("places 7")));
}

TEST(Feature, SharesRecordAndStyleWithItsOtherParts) {
    const auto first = feature({});
    first->setStyle(std::make_shared<MzStyle>());
    const auto other = first->withGeometry(MzPointGeometry::initWithPoint({5, 6}));
    EXPECT_EQ(other->record(), first->record());
    EXPECT_EQ(other->style(), first->style());
    EXPECT_EQ(other->form(), first->form());
    EXPECT_NE(other->geometry(), first->geometry());
}

}  // namespace
}  // namespace mezalith::host
