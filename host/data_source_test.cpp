// SPDX-License-Identifier: MIT
#include "host/data_source.hpp"

#include "host/failure.hpp"
#include "host/failure_of.hpp"
#include "host/map_library.hpp"
#include "host/view_cutter.hpp"
#include "tests/support/temporary_folder.hpp"
#include <mezalith/geometry/multi_point_geometry.hpp>
#include <mezalith/geometry/point_geometry.hpp>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <numbers>
#include <set>
#include <thread>

#include <gtest/gtest.h>

namespace mezalith::host {
namespace {

namespace fs = std::filesystem;

const std::string kMaps = MEZALITH_SOURCE_DIR "/data/map/";
const std::string kBad = MEZALITH_SOURCE_DIR "/tests/data/bad/map/";

class DataSourceTest : public ::testing::Test {
  protected:
    std::string put(const std::string& name, const std::string& text) const {
        return folder_.put(name, text);
    }

    /// The only layer of a table of geometries in text form.
    Layer layerOfTexts(const std::vector<std::string>& geometries) const {
        std::string table = "name,WKT\n";
        for (const std::string& geometry : geometries) table += "a,\"" + geometry + "\"\n";
        return DataSource(put("table.csv", table)).read(0);
    }

    mezalith::testing::TemporaryFolder folder_;
};

std::string failureOf(const std::string& source) {
    return mezalith::testing::failureOf([&] {
        DataSource data(source);
        for (std::size_t i = 0; i < data.layerNames().size(); ++i) data.read(i);
    });
}

std::vector<MzPoint> pointsOfLine(const Feature& feature) {
    const auto* line = static_cast<const MzMultiPointGeometry*>(feature.geometry().get());
    const auto points = pointsOf(line->multiPointGeometry());
    return {points.begin(), points.end()};
}

TEST_F(DataSourceTest, NamesTheLayersOfAFile) {
    const auto names = DataSource(kMaps + "naturalearth-110m.gpkg").layerNames();
    ASSERT_EQ(names.size(), 13u);
    EXPECT_EQ(names.front(), "countries");
    EXPECT_EQ(DataSource(kMaps + "naturalearth-110m.gpkg:rivers").layerNames(),
              std::vector<std::string>{"rivers"});
}

TEST_F(DataSourceTest, TellsTheFormsOfALayer) {
    using Forms = std::vector<Form>;
    const auto formsOf = [](const std::string& source) { return DataSource(source).formsOf(0); };
    const std::string world = kMaps + "naturalearth-110m.gpkg";
    EXPECT_EQ(formsOf(world + ":bounding_box"), Forms{Form::Area});
    EXPECT_EQ(formsOf(world + ":rivers"), Forms{Form::Line});
    EXPECT_EQ(formsOf(world + ":capitals_by_continent"), Forms{Form::Points});
    const Forms all{Form::Points, Form::Line, Form::Area};
    EXPECT_EQ(formsOf(put("mixed.geojson", R"({"type": "FeatureCollection", "features": [
        {"type": "Feature", "properties": {}, "geometry": {"type": "Point", "coordinates": [1, 2]}},
        {"type": "Feature", "properties": {}, "geometry": {"type": "LineString",
            "coordinates": [[1, 2], [3, 4]]}}]})")),
              all);
    EXPECT_EQ(formsOf(kMaps + "wkb/multilinestring-date-line-be.wkb"), all);
    EXPECT_EQ(formsOf(put("table.csv", "name,kind\na,b\n")), Forms());
}

/// The figures that data/map/SOURCES.md gives for a layer.
struct Figures {
    const char* layer;
    std::size_t features, vertices;
    std::map<std::string, std::size_t> types;
};

TEST_F(DataSourceTest, DescribesLayersAsTheirSourcesSay) {
    for (const Figures& figures : {
             Figures{"naturalearth-110m.gpkg:countries",
                     177,
                     10654,
                     {{"MultiPolygon", 29}, {"Polygon", 148}}},
             Figures{"naturalearth-110m.gpkg:rivers", 13, 1147, {{"LineString", 13}}},
             Figures{"naturalearth-110m.gpkg:geographic_lines",
                     6,
                     2399,
                     {{"LineString", 5}, {"MultiLineString", 1}}},
             Figures{"naturalearth-110m.gpkg:capitals_by_continent", 7, 199, {{"MultiPoint", 7}}},
             Figures{"naturalearth-50m.gpkg:places", 1249, 1249, {{"Point", 1249}}},
             Figures{"naturalearth-50m.gpkg:lakes", 405, 19274, {{"Polygon", 405}}},
         }) {
        SCOPED_TRACE(figures.layer);
        const LayerDescription layer = DataSource(kMaps + figures.layer).describe(0);
        EXPECT_EQ(layer.features, figures.features);
        EXPECT_EQ(layer.vertices, figures.vertices);
        EXPECT_EQ(layer.types, figures.types);
    }
}

TEST_F(DataSourceTest, DescribesBounds) {
    const auto layer = DataSource(kMaps + "naturalearth-110m.gpkg:land").describe(0);
    EXPECT_EQ(layer.bounds.minX, -180);
    EXPECT_EQ(layer.bounds.minY, -90);
    EXPECT_NEAR(layer.bounds.maxX, 180, 1e-9);
    EXPECT_NEAR(layer.bounds.maxY, 83.65, 0.01);
}

TEST_F(DataSourceTest, MakesAFeatureForEachLineOfAMultiLineString) {
    const auto layer = DataSource(kMaps + "naturalearth-110m.gpkg:geographic_lines").read(0);
    EXPECT_GT(layer.features.size(), 6u);
    std::size_t vertices = 0;
    for (const auto& feature : layer.features) {
        EXPECT_EQ(feature->form(), Form::Line);
        EXPECT_EQ(feature->kind(), "geographic_lines");
        vertices += pointsOfLine(*feature).size();
    }
    EXPECT_EQ(vertices, 2399u);
}

TEST_F(DataSourceTest, ReadsAttributes) {
    const auto layer = DataSource(kMaps + "naturalearth-110m.gpkg:countries").read(0);
    ASSERT_EQ(layer.features.size(), 177u);
    const auto& attributes = layer.features.front()->propertiesByName();
    EXPECT_TRUE(std::holds_alternative<std::string>(*attributes.find("name")));
    EXPECT_TRUE(std::holds_alternative<double>(*attributes.find("pop_est")) ||
                std::holds_alternative<std::int64_t>(*attributes.find("pop_est")));
    EXPECT_EQ(layer.features.front()->featureName(),
              std::get<std::string>(*attributes.find("name")));
}

TEST_F(DataSourceTest, ReadsValuesByTheirTypes) {
    const std::string path = put("values.geojson", R"({"type":"FeatureCollection","features":[
        {"type":"Feature","geometry":{"type":"Point","coordinates":[1,2]},
         "properties":{"whole":12345678901,"part":0.5,"yes":true,"text":"caf\u00e9","none":null}}]})");
    const auto attributes = DataSource(path).read(0).features.at(0)->propertiesByName();
    EXPECT_EQ(std::get<std::int64_t>(*attributes.find("whole")), 12345678901);
    EXPECT_EQ(std::get<double>(*attributes.find("part")), 0.5);
    EXPECT_EQ(std::get<bool>(*attributes.find("yes")), true);
    EXPECT_EQ(std::get<std::string>(*attributes.find("text")), "caf\xc3\xa9");
    EXPECT_TRUE(std::holds_alternative<std::monostate>(*attributes.find("none")));
}

TEST_F(DataSourceTest, TransformsToLongitudeAndLatitude) {
    const std::string path = put("utm.geojson", R"({"type":"FeatureCollection",
        "crs":{"type":"name","properties":{"name":"urn:ogc:def:crs:EPSG::32633"}},"features":[
        {"type":"Feature","properties":{},
         "geometry":{"type":"Point","coordinates":[262409.732136,6649017.748990]}}]})");
    const auto feature = DataSource(path).read(0).features.at(0);
    const auto* point = static_cast<const MzPointGeometry*>(feature->geometry().get());
    EXPECT_NEAR(point->x(), 10.75, 1e-9);
    EXPECT_NEAR(point->y(), 59.91, 1e-9);
}

TEST_F(DataSourceTest, TakesASystemWithLatitudeFirstForWhatItIs) {
    const std::string path = put("named.geojson", R"({"type":"FeatureCollection",
        "crs":{"type":"name","properties":{"name":"urn:ogc:def:crs:EPSG::4326"}},"features":[
        {"type":"Feature","properties":{},"geometry":{"type":"Point","coordinates":[10,60]}}]})");
    const auto feature = DataSource(path).read(0).features.at(0);
    EXPECT_EQ(static_cast<const MzPointGeometry*>(feature->geometry().get())->x(), 10);
}

TEST_F(DataSourceTest, FlattensCollectionsAndHeights) {
    const Layer layer =
        layerOfTexts({"GEOMETRYCOLLECTION Z (POINT Z (1 2 3),LINESTRING Z (0 0 1,1 1 2),"
                      "MULTILINESTRING Z ((0 0 1,1 1 2),(2 2 1,3 3 2)))"});
    ASSERT_EQ(layer.features.size(), 4u);
    EXPECT_EQ(layer.unusable.count, 0u);
    EXPECT_EQ(layer.features[0]->form(), Form::Points);
    EXPECT_EQ(layer.features[3]->form(), Form::Line);
    EXPECT_EQ(layer.features[0]->record(), layer.features[3]->record());
    EXPECT_EQ(pointsOfLine(*layer.features[3])[1].x, 3);
}

TEST_F(DataSourceTest, MakesPolylinesOfCurves) {
    const Layer layer = layerOfTexts({"CIRCULARSTRING (-1 0,0 1,1 0)",
                                      "CURVEPOLYGON (CIRCULARSTRING (-1 0,0 1,1 0,0 -1,-1 0))",
                                      "TRIANGLE ((0 0,1 0,0 1,0 0))"});
    ASSERT_EQ(layer.features.size(), 3u);
    const auto arc = pointsOfLine(*layer.features[0]);
    EXPECT_GT(arc.size(), 20u);
    for (const MzPoint& point : arc) EXPECT_NEAR(std::hypot(point.x, point.y), 1, 1e-9);
    EXPECT_EQ(layer.features[1]->form(), Form::Area);
    EXPECT_EQ(layer.features[2]->form(), Form::Area);
}

TEST_F(DataSourceTest, MakesNoFeatureWithoutAGeometry) {
    const Layer layer = layerOfTexts({"", "POINT EMPTY", "LINESTRING EMPTY", "POINT (1 2)"});
    EXPECT_EQ(layer.unusable.count, 0u);
    EXPECT_EQ(layer.features.back()->featureDescription(), "table 4");
}

TEST_F(DataSourceTest, MakesPointsOfATableOfCoordinates) {
    const auto layer = DataSource(put("towns.csv", "name,lon,lat\nOslo,10.75,59.91\n")).read(0);
    ASSERT_EQ(layer.features.size(), 1u);
    EXPECT_EQ(layer.features[0]->featureName(), "Oslo");
}

std::set<std::int64_t> idsOf(const Layer& layer) {
    std::set<std::int64_t> ids;
    for (const auto& feature : layer.features) ids.insert(feature->record()->id);
    return ids;
}

/// The records with a part that meets the area or one of its repetitions.
std::set<std::int64_t> idsIn(const Layer& layer, const BoundingBox& area) {
    std::set<std::int64_t> ids;
    for (const auto& feature : layer.features) {
        const BoundingBox box = boundsOf(*feature->geometry());
        for (const double shift : {-360.0, 0.0, 360.0}) {
            if (area.movedBy(shift, 0).meets(box)) ids.insert(feature->record()->id);
        }
    }
    return ids;
}

TEST_F(DataSourceTest, LeavesOutWhatLiesOutsideTheArea) {
    DataSource source(kMaps + "naturalearth-110m.gpkg:places");
    const Layer all = source.read(0);
    for (const BoundingBox& area : {BoundingBox{-10, 35, 30, 60}, BoundingBox{150, -50, 250, 10},
                                    BoundingBox{-200, -50, -170, -30}, BoundingBox{0, 0, 0, 0}}) {
        const std::set<std::int64_t> read = idsOf(source.read(0, {}, area));
        EXPECT_LT(read.size(), all.features.size());
        for (const std::int64_t id : idsIn(all, area)) EXPECT_TRUE(read.contains(id)) << id;
    }
    EXPECT_EQ(source.read(0).features.size(), all.features.size());
    source.read(0, {}, BoundingBox{0, 0, 1, 1});
    EXPECT_EQ(source.describe(0).features, all.features.size());
}

/// A layer of a point at each whole degree of the equator in a new GeoPackage.
void writeEquator(const std::string& path, const char* layerName, const char* column) {
    prepareMapLibrary();
    GDALDriver* const driver = GetGDALDriverManager()->GetDriverByName("GPKG");
    const GDALDatasetUniquePtr dataset(driver->Create(path.c_str(), 0, 0, 0, GDT_Unknown, nullptr));
    CPLStringList options;
    options.SetNameValue("GEOMETRY_NAME", column);
    OGRSpatialReference degrees;
    degrees.importFromEPSG(4326);
    OGRLayer* const layer = dataset->CreateLayer(layerName, &degrees, wkbPoint, options.List());
    for (int degree = 0; degree < 90; ++degree) {
        OGRFeature feature(layer->GetLayerDefn());
        feature.SetGeometryDirectly(new OGRPoint(degree, 0));
        ASSERT_EQ(layer->CreateFeature(&feature), OGRERR_NONE);
    }
}

TEST_F(DataSourceTest, ReadsOnlyTheAreaOfAView) {
    const std::string path = folder_.path("equator.gpkg");
    writeEquator(path, "equator", "place");
    {
        const GDALDatasetUniquePtr dataset(
            GDALDataset::Open(path.c_str(), GDAL_OF_VECTOR | GDAL_OF_UPDATE));
        for (const char* sql :
             {"CREATE VIEW east AS SELECT fid, place FROM equator WHERE fid > 10",
              "INSERT INTO gpkg_contents (table_name, identifier, data_type, srs_id) "
              "VALUES ('east', 'east', 'features', 4326)",
              "INSERT INTO gpkg_geometry_columns VALUES ('east', 'place', 'POINT', 4326, 0, 0)"}) {
            dataset->ExecuteSQL(sql, nullptr, nullptr);
        }
    }
    DataSource source(path + ":east");
    const Layer part = source.read(0, {}, BoundingBox{8.5, -1, 12.5, 1});
    EXPECT_TRUE(std::ranges::includes(idsOf(part), std::set<std::int64_t>{11, 12, 13}));
    EXPECT_EQ(source.read(0).features.size(), 80u);
}

TEST_F(DataSourceTest, AsksTheIndexOfALayerWhateverItsName) {
    const std::string path = folder_.path("equator.gpkg");
    writeEquator(path, "sea \"of\" o'er", "pl\"ace");
    DataSource source(path);
    EXPECT_EQ(idsOf(source.read(0, {}, BoundingBox{9.5, -1, 12.5, 1})),
              (std::set<std::int64_t>{11, 12, 13}));
    EXPECT_EQ(source.read(0).features.size(), 90u);
}

TEST_F(DataSourceTest, ReadsOnlyTheAreaOfALayerThatRoundsBeyondTheGlobe) {
    DataSource source(kMaps + "naturalearth-110m.gpkg:land");
    const BoundingBox area{100, -45, 170, -5};
    const Layer land = source.read(0, {}, area);
    EXPECT_FALSE(land.features.empty());
    for (const auto& feature : land.features) {
        EXPECT_TRUE(area.meets(boundsOf(*feature->geometry())));
    }
}

TEST_F(DataSourceTest, FindsWhatIsStoredBeyondTheGlobeInItsArea) {
    DataSource source(put("far.csv", "name,WKT\na,POINT (190 10)\nb,POINT (10 10)\n"));
    EXPECT_EQ(source.read(0, {}, BoundingBox{-175, 0, -165, 20}).features.front()->featureName(),
              "a");
}

TEST_F(DataSourceTest, KeepsTheOrderOfRecordsInAnArea) {
    DataSource source(kMaps + "naturalearth-110m.gpkg:countries");
    std::vector<std::int64_t> ids;
    for (const auto& feature : source.read(0, {}, BoundingBox{-30, -40, 80, 75}).features) {
        ids.push_back(feature->record()->id);
    }
    EXPECT_GT(ids.size(), 100u);
    EXPECT_TRUE(std::ranges::is_sorted(ids));
}

TEST_F(DataSourceTest, ReadsAllOfAnotherReferenceSystem) {
    DataSource source(put("zone.geojson", R"({"type": "FeatureCollection",
        "crs": {"type": "name", "properties": {"name": "EPSG:32633"}},
        "features": [{"type": "Feature", "properties": {},
                      "geometry": {"type": "Point", "coordinates": [500000, 6000000]}}]})"));
    EXPECT_EQ(source.read(0, {}, BoundingBox{14, 53, 16, 55}).features.size(), 1u);
}

TEST_F(DataSourceTest, ReadsABareGeometry) {
    const std::string path = kMaps + "wkb/multilinestring-date-line-be.wkb";
    DataSource source(path);
    EXPECT_EQ(source.layerNames(), std::vector<std::string>{"multilinestring-date-line-be"});
    EXPECT_EQ(source.describe(0).vertices, 587u);
    EXPECT_EQ(source.read(0).features.size(), 5u);
    EXPECT_EQ(failureOf(path + ":multilinestring-date-line-be"), "no failure");
    EXPECT_EQ(failureOf(path + ":other"), path + ": no layer other");
}

TEST_F(DataSourceTest, FindsFilesWithColonsInTheirNames) {
    const std::string path = put("a:b.geojson", R"({"type":"Point","coordinates":[1,2]})");
    EXPECT_EQ(DataSource(path).read(0).features.size(), 1u);
}

TEST_F(DataSourceTest, SaysWhatIsWrong) {
    EXPECT_EQ(failureOf("nowhere.gpkg"), "nowhere.gpkg: No such file or directory");
    const std::string world = kMaps + "naturalearth-110m.gpkg";
    EXPECT_EQ(failureOf(world + ":see"), world + ": no layer see");
    const std::string readme = put("readme.txt", "no map\n");
    EXPECT_TRUE(failureOf(readme).starts_with(readme + ": ")) << failureOf(readme);
    const std::string empty = put("empty.wkb", "");
    EXPECT_EQ(failureOf(empty), empty + ": the file is empty");
    const std::string cut = MEZALITH_SOURCE_DIR "/tests/data/bad/wkb/trunc-polygon-009.wkb";
    EXPECT_EQ(failureOf(cut),
              cut + ": byte 5: expected at most 0 rings in the 0 bytes that follow, found 2");
}

TEST_F(DataSourceTest, NeverLeavesTheMachine) {
    for (const char* source :
         {"/vsicurl/http://127.0.0.1/a.geojson", "http://127.0.0.1/a.geojson", "/vsizip/a.zip",
          "https://127.0.0.1/a.gpkg:layer", "WFS:http://127.0.0.1"}) {
        EXPECT_EQ(failureOf(source), std::string(source) + ": only local files are read");
    }
    const std::string reference = put("reference.vrt",
                                      "<OGRVRTDataSource><OGRVRTLayer name=\"a\"><SrcDataSource>"
                                      "/vsicurl/http://127.0.0.1/a.geojson</SrcDataSource>"
                                      "</OGRVRTLayer></OGRVRTDataSource>");
    EXPECT_NE(failureOf(reference), "no failure");
}

TEST_F(DataSourceTest, KeepsTheLibraryFromStandardError) {
    ::testing::internal::CaptureStderr();
    for (const auto& entry : fs::directory_iterator(kBad)) failureOf(entry.path().string());
    failureOf(put("broken.geojson", "{\"type\":\"FeatureCollection\",\"features\":["));
    EXPECT_EQ(::testing::internal::GetCapturedStderr(), "");
}

TEST_F(DataSourceTest, ReportsProgressUpToTheEnd) {
    std::vector<double> shares;
    DataSource(kMaps + "naturalearth-110m.gpkg:rivers").read(0, [&](double share) {
        shares.push_back(share);
    });
    ASSERT_EQ(shares.size(), 13u);
    EXPECT_TRUE(std::ranges::is_sorted(shares));
    EXPECT_EQ(shares.back(), 1);
}

TEST_F(DataSourceTest, ServesThreadsThatOpenTheirOwn) {
    std::vector<std::size_t> counts(4);
    std::vector<std::thread> threads;
    for (std::size_t& count : counts) {
        threads.emplace_back([&count] {
            count = DataSource(kMaps + "naturalearth-110m.gpkg:lakes").read(0).features.size();
        });
    }
    for (std::thread& thread : threads) thread.join();
    EXPECT_EQ(counts, (std::vector<std::size_t>{25, 25, 25, 25}));
}

}  // namespace
}  // namespace mezalith::host
