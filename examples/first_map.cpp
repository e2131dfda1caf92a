// SPDX-License-Identifier: MIT
#include <mezalith/geometry/multi_polygon_geometry.hpp>
#include <mezalith/platform/cairo/cairo_port.hpp>

#include <fstream>
#include <iterator>

using namespace mezalith;

int main(int, char** files) {  // from Well-Known Binary in degrees to a picture in UTM zone 33
    std::ifstream file(files[1], std::ios::binary);
    const std::string bytes(std::istreambuf_iterator<char>(file), {});
    const auto stored = MzGeometry::geometryWithWKBData(std::as_bytes(std::span(bytes)));
    const auto italy = std::dynamic_pointer_cast<MzMultiPolygonGeometry>(
        stored->geometryWithProjection(MzMapProjection::mapProjectionWithUTMZone(33)));

    const auto toView = MzAffineTransform::transform();  // three kilometres to a view point
    toView->scaleBy(1 / 3000.0);
    toView->translateXBy(190e3, -4.02e6);
    MzClippingRegion view;  // what is in sight, in metres
    view.setClippingRect({{-190e3, 4.02e6}, {1020e3, 1230e3}});
    view.setTransform(toView);

    const auto port = platform::CairoPort::pixelPort({340, 410}, 2);
    for (const MzPolygon& part : polygonsOf(italy->clippedMultiPolygonWithRegion(&view))) {
        for (const MzLinearRing& ring : ringsOf(&part)) port->addLines(pointsOf(&ring));
    }
    port->setRGBFillColor(0.82, 0.88, 0.72, 1);
    port->setRGBStrokeColor(0.35, 0.50, 0.62, 1);
    port->drawPath(platform::PathDrawingMode::EvenOddFillStroke);
    return port->writePNG(files[2]) ? 0 : 1;
}
