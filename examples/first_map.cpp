// SPDX-License-Identifier: MIT
#include <mezalith/geometry/multi_polygon_geometry.hpp>
#include <mezalith/platform/cairo/cairo_port.hpp>

#include <fstream>
#include <iterator>

using namespace mezalith;

int main(int, char** files) {  // from Well-Known Binary in degrees to a picture in UTM zone 33
    std::ifstream file(files[1], std::ios::binary);
    const std::string wkb(std::istreambuf_iterator<char>(file), {});
    const auto italy = std::dynamic_pointer_cast<MzMultiPolygonGeometry>(
        MzGeometry::geometryWithWKBData(std::as_bytes(std::span(wkb)))
            ->geometryWithProjection(MzMapProjection::mapProjectionWithUTMZone(33)));
    MzClippingRegion view;  // what is in sight, in metres; three kilometres to a view point
    view.setClippingRect({{-190e3, 4.02e6}, {1020e3, 1230e3}});
    view.setTransform(MzAffineTransform::transform());
    view.transform()->setTransformStruct({1 / 3e3, 0, 0, 1 / 3e3, 190 / 3.0, -4020 / 3.0});
    const auto port = platform::CairoPort::pixelPort({340, 410}, 2);
    for (const MzPolygon& part : polygonsOf(italy->clippedMultiPolygonWithRegion(&view)))
        for (const MzLinearRing& ring : ringsOf(&part)) port->addLines(pointsOf(&ring));
    port->setRGBFillColor(0.55, 0.68, 0.47, 1);
    port->drawPath(platform::PathDrawingMode::EvenOddFill);
    return port->writePNG(files[2]) ? 0 : 1;
}
