// SPDX-License-Identifier: MIT
#include "host/geojson_records.hpp"

#include "host/failure.hpp"
#include <mezalith/geometry/geometry_record.hpp>
#include <mezalith/platform/number_text.hpp>

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>

#include <nlohmann/json.hpp>
#include <ogr_p.h>

namespace mezalith::host {
namespace {

using Json = nlohmann::json;

constexpr std::string_view kNone = "null";

/// `count` texts in brackets.
template <typename TextAt>
std::string listOf(int count, const TextAt& textAt) {
    std::string text = "[";
    for (int i = 0; i < count; ++i) {
        if (i > 0) text += ',';
        text += textAt(i);
    }
    return text + "]";
}

/// With a point or an exponent: "-0" and "1" would be read as integers.
std::string numberText(double number) {
    if (!std::isfinite(number)) return std::string(kNone);
    const std::string text = platform::shortestText(number);
    return text.find_first_of(".e") == std::string::npos ? text + ".0" : text;
}

std::string positionText(double x, double y, double z, bool hasZ) {
    std::string text = "[" + numberText(x) + "," + numberText(y);
    if (hasZ) text += "," + numberText(z);
    return text + "]";
}

std::string coordinatesText(const OGRGeometry& geometry) {
    const bool hasZ = geometry.Is3D() != FALSE;
    switch (wkbFlatten(geometry.getGeometryType())) {
        case wkbPoint: {
            const OGRPoint& point = *geometry.toPoint();
            if (point.IsEmpty() != FALSE) return "[]";
            return positionText(point.getX(), point.getY(), point.getZ(), hasZ);
        }
        case wkbLineString: {
            const OGRSimpleCurve& line = *geometry.toSimpleCurve();
            return listOf(line.getNumPoints(), [&](int i) {
                return positionText(line.getX(i), line.getY(i), line.getZ(i), hasZ);
            });
        }
        case wkbPolygon: {
            const OGRPolygon& polygon = *geometry.toPolygon();
            if (polygon.IsEmpty() != FALSE) return "[]";
            return listOf(polygon.getNumInteriorRings() + 1, [&](int i) {
                return coordinatesText(i == 0 ? *polygon.getExteriorRing()
                                              : *polygon.getInteriorRing(i - 1));
            });
        }
        default: {
            const OGRGeometryCollection& members = *geometry.toGeometryCollection();
            return listOf(members.getNumGeometries(),
                          [&](int i) { return coordinatesText(*members.getGeometryRef(i)); });
        }
    }
}

/// Of a geometry without curves.
std::string plainText(const OGRGeometry& geometry) {
    const auto type = static_cast<std::uint32_t>(wkbFlatten(geometry.getGeometryType()));
    if (MzGeometryTypeName(type).empty()) return std::string(kNone);
    const std::string head = R"({"type":")" + std::string(MzGeometryTypeName(type)) + R"(",)";
    if (type != MzGeometryTypeGeometryCollection) {
        return head + R"("coordinates":)" + coordinatesText(geometry) + "}";
    }
    const OGRGeometryCollection& members = *geometry.toGeometryCollection();
    return head + R"("geometries":)" +
           listOf(members.getNumGeometries(),
                  [&](int i) { return plainText(*members.getGeometryRef(i)); }) +
           "}";
}

/// "null" for a geometry that GeoJSON does not have.
std::string geometryText(const OGRGeometry& geometry) {
    if (geometry.hasCurveGeometry() != FALSE) {
        return geometryText(*OGRGeometryUniquePtr(geometry.getLinearGeometry()));
    }
    std::string text = plainText(geometry);
    if (text.find(kNone) != std::string::npos) text = kNone;
    return text;
}

std::string quoted(const std::string& text) {
    return Json(text).dump(-1, ' ', false, Json::error_handler_t::replace);
}

std::string stringText(const OGRFeature& record, int field) {
    const char* text = record.GetFieldAsString(field);
    const bool isJson = record.GetFieldDefnRef(field)->GetSubType() == OFSTJSON;
    return isJson && Json::accept(text) ? text : quoted(text);
}

std::string dateText(const OGRFeature& record, int field) {
    const std::unique_ptr<char, decltype(&VSIFree)> text(
        OGRGetXMLDateTime(record.GetRawFieldRef(field)), &VSIFree);
    constexpr std::size_t kDay = 10;  // digits and dashes
    const bool isDay = record.GetFieldDefnRef(field)->GetType() == OFTDate;
    return quoted(std::string(text.get()).substr(0, isDay ? kDay : std::string::npos));
}

/// The elements of a list of numbers or texts.
std::string elementsText(const OGRFeature& record, int field) {
    const OGRField& value = *record.GetRawFieldRef(field);
    switch (record.GetFieldDefnRef(field)->GetType()) {
        case OFTIntegerList:
            return listOf(value.IntegerList.nCount,
                          [&](int i) { return std::to_string(value.IntegerList.paList[i]); });
        case OFTInteger64List:
            return listOf(value.Integer64List.nCount,
                          [&](int i) { return std::to_string(value.Integer64List.paList[i]); });
        case OFTRealList:
            return listOf(value.RealList.nCount,
                          [&](int i) { return numberText(value.RealList.paList[i]); });
        default:
            return listOf(value.StringList.nCount,
                          [&](int i) { return quoted(value.StringList.paList[i]); });
    }
}

std::string valueText(const OGRFeature& record, int field) {
    if (record.IsFieldNull(field) != FALSE) return std::string(kNone);
    const OGRFieldDefn& definition = *record.GetFieldDefnRef(field);
    switch (definition.GetType()) {
        case OFTInteger:
            if (definition.GetSubType() == OFSTBoolean) {
                return record.GetFieldAsInteger(field) != 0 ? "true" : "false";
            }
            [[fallthrough]];
        case OFTInteger64:
            return std::to_string(record.GetFieldAsInteger64(field));
        case OFTReal:
            return numberText(record.GetFieldAsDouble(field));
        case OFTIntegerList:
        case OFTInteger64List:
        case OFTRealList:
        case OFTStringList:
            return elementsText(record, field);
        case OFTDate:
        case OFTDateTime:
            return dateText(record, field);
        default:
            return stringText(record, field);
    }
}

std::string propertiesText(const OGRFeature& record) {
    std::string text;
    for (int i = 0; i < record.GetFieldCount(); ++i) {
        if (record.IsFieldSet(i) == FALSE) continue;
        if (!text.empty()) text += ',';
        text += quoted(record.GetFieldDefnRef(i)->GetNameRef()) + ":" + valueText(record, i);
    }
    return "{" + text + "}";
}

}  // namespace

std::string geoJSONOf(const OGRFeature& record) {
    const OGRGeometry* geometry = record.GetGeometryRef();
    const std::string text = geometry == nullptr ? std::string(kNone) : geometryText(*geometry);
    const std::string id = std::to_string(record.GetFID());
    if (geometry != nullptr && text == kNone) {
        throw Failure("feature " + id, "GeoJSON has no such geometry");
    }
    return R"({"type":"Feature","id":)" + id + R"(,"properties":)" + propertiesText(record) +
           R"(,"geometry":)" + text + "}";
}

}  // namespace mezalith::host
