// SPDX-License-Identifier: MIT
#include <mezalith/platform/json/keyed_archive.hpp>
#include <mezalith/platform/predicates/format_predicate.hpp>
#include <mezalith/style/line_symbolizer.hpp>
#include <mezalith/style/point_symbolizer.hpp>
#include <mezalith/style/polygon_symbolizer.hpp>
#include <mezalith/style/style_archive.hpp>

#include <utility>

namespace mezalith {

namespace {

constexpr std::string_view kStyleClass = "MzStyle";

platform::ArchiveClasses makeClasses() {
    auto classes = platform::ArchiveClasses::platformClasses();
    classes.add(kStyleClass, MzStyle::initWithCoder, {"name", "title", "abstract"});
    classes.add("MzRule", MzRule::initWithCoder,
                {"name", "title", "abstract", "minScaleDenominator", "maxScaleDenominator",
                 "selectionFilter", "filter"});
    const platform::ArchiveClasses::Keys dashes{"lineDashOffset", "lineDashCount", "lineDash"};
    classes.add("MzLineSymbolizer", MzLineSymbolizer::initWithCoder, dashes);
    classes.add("MzPolygonSymbolizer", MzPolygonSymbolizer::initWithCoder, dashes);
    platform::ArchiveClasses::Keys ofPoints = dashes;
    ofPoints.insert(ofPoints.end(), {"symbolRotation", "shadow"});
    classes.add("MzPointSymbolizer", MzPointSymbolizer::initWithCoder, ofPoints);
    classes.add("Predicate", platform::FormatPredicate::initWithCoder);
    classes.addText("Predicate", platform::FormatPredicate::initWithText);
    return classes;
}

UnarchivedStyle styleOf(platform::UnarchivedObject read) {
    // The archive made it, and nobody else has a say in its constness.
    auto style = std::const_pointer_cast<platform::Archivable>(read.object);
    return {std::dynamic_pointer_cast<MzStyle>(style), std::move(read.error)};
}

}  // namespace

const platform::ArchiveClasses& styleArchiveClasses() {
    static const platform::ArchiveClasses kClasses = makeClasses();
    return kClasses;
}

UnarchivedStyle styleFromText(std::string_view text) {
    return styleOf(platform::unarchivedText(text, styleArchiveClasses(), kStyleClass));
}

UnarchivedStyle styleFromBytes(std::span<const std::byte> bytes) {
    return styleOf(platform::unarchivedBytes(bytes, styleArchiveClasses(), kStyleClass));
}

}  // namespace mezalith
