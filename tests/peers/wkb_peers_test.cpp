// SPDX-License-Identifier: MIT
#include "tests/peers/geos_peer.hpp"
#include <mezalith/geometry/geometry_model.hpp>
#include <mezalith/geometry/wkb_reader.hpp>
#include <mezalith/geometry/wkb_writer.hpp>

#include <memory>
#include <span>
#include <string>

#include <geos_c.h>
#include <gtest/gtest.h>

// What GEOS writes is read, and what is written is what GEOS writes.

namespace mezalith {
namespace {

using namespace test;

class Geos {
  public:
    /// Reads and writes again; no bytes when they are refused.
    Bytes rewritten(const Bytes& bytes, const MzWKBOptions& options, int dimensions) {
        const auto* first = reinterpret_cast<const unsigned char*>(bytes.data());
        const GeosGeometry geometry{
            GEOSWKBReader_read_r(geosContext(), reader_.get(), first, bytes.size())};
        if (geometry == nullptr) return {};
        setUp(geometry.get(), options, dimensions);
        std::size_t size = 0;
        unsigned char* written =
            GEOSWKBWriter_write_r(geosContext(), writer_.get(), geometry.get(), &size);
        const auto view = std::as_bytes(std::span(written, size));
        Bytes result(view.begin(), view.end());
        GEOSFree_r(geosContext(), written);
        return result;
    }

  private:
    struct Destroy {
        void operator()(GEOSWKBReader* reader) const {
            GEOSWKBReader_destroy_r(geosContext(), reader);
        }
        void operator()(GEOSWKBWriter* writer) const {
            GEOSWKBWriter_destroy_r(geosContext(), writer);
        }
    };

    void setUp(GEOSGeometry* geometry, const MzWKBOptions& options, int dimensions) {
        GEOSContextHandle_t context = geosContext();
        GEOSWKBWriter* writer = writer_.get();
        const bool isISO = options.form == MzWKBForm::ISO;
        const bool hasSRID = options.form == MzWKBForm::EWKB && options.srid;
        GEOSWKBWriter_setFlavor_r(context, writer, isISO ? GEOS_WKB_ISO : GEOS_WKB_EXTENDED);
        GEOSWKBWriter_setOutputDimension_r(context, writer, dimensions);
        GEOSWKBWriter_setByteOrder_r(context, writer,
                                     options.isLittleEndian ? GEOS_WKB_NDR : GEOS_WKB_XDR);
        GEOSWKBWriter_setIncludeSRID_r(context, writer, hasSRID ? 1 : 0);
        GEOSSetSRID_r(context, geometry, hasSRID ? *options.srid : 0);
    }

    std::unique_ptr<GEOSWKBReader, Destroy> reader_{GEOSWKBReader_create_r(geosContext())};
    std::unique_ptr<GEOSWKBWriter, Destroy> writer_{GEOSWKBWriter_create_r(geosContext())};
};

MzWKBOptions anyOptions(const Dice& dice) {
    return {.form = static_cast<MzWKBForm>(dice(3)),
            .isLittleEndian = dice(2) == 0,
            .srid = static_cast<std::int32_t>(1 + dice(999'999))};
}

TEST(WKBPeers, WritesTheBytesThatGeosWrites) {
    Geos geos;
    const Dice dice = diceOf(1);
    for (int i = 0; i < 20'000; ++i) {
        const Model model = ModelMaker{dice, false, true}.make();
        const Bytes source =
            bytesOf(model, {.order = [&dice] { return static_cast<std::uint8_t>(dice(2)); }});
        const MzWKBOptions options = anyOptions(dice);
        const MzWKBReading reading = MzReadWKB(source);
        ASSERT_TRUE(reading) << i << ": " << reading.error.text();
        ASSERT_EQ(MzWKBOfGeometry(*reading.geometry.record(), options),
                  geos.rewritten(source, options, 2))
            << i << ", type " << model.type;
    }
}

TEST(WKBPeers, ReadsWhatGeosWritesWithZ) {
    Geos geos;
    const Dice dice = diceOf(2);
    for (int i = 0; i < 10'000; ++i) {
        const Model model = ModelMaker{dice, false, true}.make();
        const MzWKBOptions options = anyOptions(dice);
        const Bytes bytes =
            geos.rewritten(bytesOf(model, {.hasZ = true, .hasFlags = true}), options, 3);
        const MzWKBReading reading = MzReadWKB(bytes);
        ASSERT_TRUE(reading) << i << ": " << reading.error.text();
        ASSERT_TRUE(reading.hasZ && isSame(*reading.geometry.record(), model)) << i;
        ASSERT_EQ(reading.srid.has_value(), options.form == MzWKBForm::EWKB) << i;
    }
}

TEST(WKBPeers, RefuseTheSameTruncations) {
    Geos geos;
    const Dice dice = diceOf(3);
    for (int i = 0; i < 2'000; ++i) {
        Bytes bytes = bytesOf(ModelMaker{dice, false, true}.make());
        bytes.resize(dice(bytes.size()));
        ASSERT_FALSE(MzReadWKB(bytes, MzTrailingBytes::Allowed)) << i;
        ASSERT_TRUE(geos.rewritten(bytes, {}, 2).empty()) << i;
    }
}

}  // namespace
}  // namespace mezalith
