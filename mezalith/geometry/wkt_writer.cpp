// SPDX-License-Identifier: MIT
#include <mezalith/geometry/wkb_writer.hpp>
#include <mezalith/geometry/wkt_writer.hpp>
#include <mezalith/platform/number_text.hpp>

#include <cmath>
#include <utility>

namespace mezalith {
namespace {

class Writer {
  public:
    void geometry(const MzGeometryRecord& g) {
        for (const char letter : MzGeometryTypeName(g.type)) {
            text += letter >= 'a' ? static_cast<char>(letter - 'a' + 'A') : letter;
        }
        text += ' ';
        content(g);
    }

    std::string text;

  private:
    template <typename Elements, typename Write>
    void list(const Elements& elements, const Write& write) {
        if (elements.empty()) {
            text += "EMPTY";
            return;
        }
        const char* before = "(";
        for (const auto& element : elements) {
            text += std::exchange(before, ", ");
            write(element);
        }
        text += ')';
    }

    void content(const MzGeometryRecord& g) {
        const MzMultiLineString lines = multiLineStringOf(g);
        const MzMultiPolygon polygons = multiPolygonOf(g);
        switch (g.type) {
            case MzGeometryTypePoint:
                return point(g.points == nullptr ? MzPoint{NAN, NAN} : g.points[0]);
            case MzGeometryTypeLineString:
                return positions(g);
            case MzGeometryTypePolygon:
                return rings(polygonOf(g));
            case MzGeometryTypeMultiPoint:
                return list(pointsOf(&g), [this](MzPoint p) { point(p); });
            case MzGeometryTypeMultiLineString:
                return list(lineStringsOf(&lines),
                            [this](const MzLineString& line) { positions(line); });
            case MzGeometryTypeMultiPolygon:
                return list(polygonsOf(&polygons),
                            [this](const MzPolygon& polygon) { rings(polygon); });
            default:
                return list(membersOf(&g),
                            [this](const MzGeometryRecord& member) { geometry(member); });
        }
    }

    void rings(const MzPolygon& polygon) {
        list(ringsOf(&polygon), [this](const MzLinearRing& ring) { positions(ring); });
    }

    template <typename Record>
    void positions(const Record& record) {
        list(pointsOf(&record), [this](MzPoint p) { position(p); });
    }

    void point(MzPoint p) {
        if (std::isnan(p.x) && std::isnan(p.y)) {
            text += "EMPTY";
            return;
        }
        text += '(';
        position(p);
        text += ')';
    }

    void position(MzPoint p) {
        text += platform::shortestText(p.x) + ' ' + platform::shortestText(p.y);
    }
};

}  // namespace

std::string MzWKTOfGeometry(const MzGeometryRecord& geometry) {
    Writer writer;
    // What can be written in binary can be written.
    if (MzWKBSize(geometry) > 0) writer.geometry(geometry);
    return std::move(writer.text);
}

}  // namespace mezalith
