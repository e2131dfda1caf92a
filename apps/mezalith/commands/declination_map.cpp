// SPDX-License-Identifier: MIT
#include "apps/mezalith/arguments.hpp"
#include "apps/mezalith/command_table.hpp"
#include "apps/mezalith/field_options.hpp"
#include "apps/mezalith/isogonic_legend.hpp"
#include "apps/mezalith/isogonic_map.hpp"
#include "apps/mezalith/layer_styles.hpp"
#include "apps/mezalith/picture.hpp"
#include "apps/mezalith/text_output.hpp"
#include "apps/mezalith/view_options.hpp"
#include "host/data_source.hpp"
#include "host/failure.hpp"
#include "host/isogonic_lines.hpp"
#include "host/map_view.hpp"
#include <mezalith/platform/resource_bundle.hpp>

#include <chrono>
#include <cstdio>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

namespace mezalith::app {
namespace {

constexpr char kWorldMap[] = "naturalearth-110m.gpkg";
constexpr host::BoundingBox kWorld{-180, -90, 180, 90};

constexpr char kFooter[] =
    "Lines of equal declination, degrees: warm colours where magnetic north lies to the east of "
    "true north, cold ones where it lies to the west, black where both agree. Beyond 60 degrees "
    "only every thirtieth is drawn.";

struct Given {
    std::string output;
    ViewTexts view{.size = "1200x664", .background = "#e9f0f4"};
    std::string coast;
    std::string model;
    std::optional<platform::Date> date;
    std::optional<double> step;
    bool overwrite = false;
};

std::string coastOf(const Given& given) {
    if (!given.coast.empty()) return given.coast;
    const auto path = platform::ResourceBundle::library().pathForResource(kWorldMap);
    if (!path) throw host::Failure(kWorldMap, "it is not among the library's resources");
    return *path + ":land";
}

void drawLand(host::MapView& view, const std::string& coast) {
    LayerStyles styles({.fill = {"#f6f2e7"}, .stroke = {"#a29a8b"}, .width = {"0.6"}});
    host::DataSource source(coast);
    for (std::size_t i = 0; i < source.layerNames().size(); ++i) {
        const host::Layer layer = source.read(i, {}, view.seen());
        tellUnusable(coast, layer.name, layer.unusable);
        for (const auto& feature : layer.features) {
            feature->setStyle(styles.style(layer.name, feature->form()));
            view.draw(*feature);
        }
    }
}

std::vector<double> levelsOf(const std::vector<Isogon>& isogons) {
    std::vector<double> levels;
    levels.reserve(isogons.size());
    for (const Isogon& isogon : isogons) levels.push_back(isogon.level);
    return levels;
}

std::string titleOf(const MzGeomagneticModel& model, const MzGeomagneticField& field,
                    platform::Date date) {
    const std::chrono::year_month_day day(std::chrono::floor<std::chrono::days>(date));
    char text[32];
    std::snprintf(text, sizeof text, "%04d-%02u-%02u", static_cast<int>(day.year()),
                  static_cast<unsigned>(day.month()), static_cast<unsigned>(day.day()));
    const std::string expiry = expiryOf(model, field);
    return "Magnetic declination, degrees east, on " + std::string(text) + " by " + model.name() +
           (expiry.empty() ? "" : " (" + expiry + ")");
}

platform::Date today() {
    return std::chrono::floor<std::chrono::days>(std::chrono::system_clock::now());
}

void run(const Given& given) {
    const ViewOptions options = viewOptionsOf(given.view);
    const double legendHeight = kLegendHeight * options.scaleFactor;
    const MzSize mapSize{options.size.width, options.size.height - legendHeight};
    if (!(mapSize.height > legendHeight)) throw UsageError("--size", "no room beside the legend");
    const auto model = readFieldModel(given.model);
    const platform::Date date = given.date.value_or(today());
    const MzGeomagneticField field = fieldOfModel(*model, date);
    Picture picture(given.output, given.overwrite, options.size, options.pixelRatio);
    host::MapView view({.projection = options.projection,
                        .area = options.area.value_or(kWorld),
                        .size = mapSize,
                        .pixelRatio = picture.pixelRatio(),
                        .scaleFactor = options.scaleFactor,
                        .spacing = picture.spacing()});
    host::IsogonicLines lines(field, view.seen());
    const std::vector<Isogon> isogons =
        isogonsInSight(view, lines, isogonicLevels(lines.least(), lines.greatest(), given.step));
    const std::vector<double> levels = levelsOf(isogons);
    const IsogonicStyle style(levels);

    platform::GraphicsPort& port = picture.port();
    const platform::GraphicsContext context(&port);
    fillBackground(port, options.size, *platform::Color::whiteColor());
    port.saveState();
    port.translate(0, legendHeight);
    clipToOutlines(port, outlineOf(mapSize));
    fillBackground(port, mapSize, *options.background);
    drawLand(view, coastOf(given));
    drawIsogons(view, isogons, style);
    for (const Caption& caption : isogonCaptions(view, isogons, style)) drawCaption(port, caption);
    port.restoreState();
    drawLegend(port, options.size.width, options.scaleFactor, titleOf(*model, field, date), levels,
               style);
    picture.finish();
}

void addOptions(CLI::App& command, const std::shared_ptr<Given>& given) {
    command.add_option("-o,--output", given->output, "Picture to write, .png, .svg or .pdf")
        ->required()
        ->type_name("OUT");
    command.add_flag("--overwrite", given->overwrite, "Replace OUT when it exists");
    command
        .add_option_function<std::string>(
            "--date",
            [given](const std::string& text) { given->date = dateArgument("--date", text); },
            "Day, or instant, GMT; default today")
        ->type_name(kDateForm);
    command.add_option("--model", given->model, "COF, table or SHC file; default IGRF-14")
        ->type_name("FILE");
    command
        .add_option_function<std::string>(
            "--step",
            [given](const std::string& text) { given->step = positiveArgument("--step", text); },
            "Degrees from one line to the next; default by what is in sight")
        ->type_name("DEGREES");
    command
        .add_option("--coast", given->coast, "Map data to draw below; default a map of the world")
        ->type_name("SOURCE");
    addViewOptions(command, given->view);
}

}  // namespace

void setUpDeclinationMap(CLI::App& command) {
    const auto given = std::make_shared<Given>();
    command.footer(kFooter);
    addOptions(command, given);
    command.callback([given] { run(*given); });
}

}  // namespace mezalith::app
