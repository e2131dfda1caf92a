// SPDX-License-Identifier: MIT
#include "apps/mezalith/arguments.hpp"
#include "apps/mezalith/command_table.hpp"
#include "apps/mezalith/field_options.hpp"
#include "apps/mezalith/number_query.hpp"
#include "host/failure.hpp"
#include <mezalith/geomagnetism/magnetic_declination.hpp>
#include <mezalith/platform/resource_bundle.hpp>

#include <cmath>
#include <memory>
#include <optional>
#include <string>
#include <utility>

#include <CLI/CLI.hpp>

namespace mezalith::app {
namespace {

constexpr char kFooter[] =
    "Degrees, positive where magnetic north lies to the east of true north. With --all or --json "
    "every component of the field follows: inclination in degrees, horizontal and total intensity, "
    "the parts to the north, to the east and down in nanoteslas, and by how much each differs a "
    "year later. A date past the model's last year is answered and reported as expired.";

struct Given {
    platform::Date date{};
    double altitude = 0;
    std::string model;
    bool settled = false;
    bool all = false;
};

/// One run of the command: the field that is asked, and what is to be said when all is answered.
class Questions {
  public:
    explicit Questions(std::shared_ptr<const Given> given) : given_(std::move(given)) {}

    NumberQuery::TextForm begin(bool json) {
        complete_ = json || given_->all;
        if (given_->settled) {
            checkSettled();
        } else {
            const auto model = readFieldModel(given_->model);
            field_ = fieldOfModel(*model, given_->date);
            complaint_ = expiryOf(*model, *field_);
        }
        return given_->all ? NumberQuery::TextForm::NamesAndValues
                           : NumberQuery::TextForm::FirstValue;
    }

    Answer answer(MzPoint place) {
        const bool atPole = std::abs(place.y) == 90;
        if (atPole && !(complete_ && field_)) throw host::Failure("declination", kAtPole);
        if (!field_) return {{"declination", settledDeclination(place)}};
        if (!complete_) {
            return {{"declination", field_->elementsAt(place, given_->altitude).declination}};
        }
        if (atPole) complaint_ = kAtPole;
        return components(*field_, place, !atPole);
    }

    void end() const {
        if (!complaint_.empty()) throw host::Failure("declination", complaint_);
    }

  private:
    static constexpr char kAtPole[] = "undefined at the pole";

    void checkSettled() const {
        if (!given_->model.empty()) throw UsageError("--model", "does not go with --settled");
        if (given_->all) throw UsageError("--all", "does not go with --settled");
        if (!platform::ResourceBundle::library().pathForResource("IGRF11.COF")) {
            throw host::Failure("IGRF11.COF", "it is not among the library's resources");
        }
    }

    double settledDeclination(MzPoint place) const {
        return MzMagneticDeclination().declinationForLatitudeLongitude(place, given_->date,
                                                                       given_->altitude);
    }

    /// Everything, but for the declination where there is none.
    Answer components(const MzGeomagneticField& field, MzPoint place, bool hasDeclination) const {
        const MzMagneticElements e = field.elementsAt(place, given_->altitude);
        const MzMagneticElements d = field.annualChangeAt(place, given_->altitude);
        Answer answer;
        if (hasDeclination) answer.emplace_back("declination", e.declination);
        answer.insert(answer.end(), {{"inclination", e.inclination},
                                     {"horizontal", e.horizontal},
                                     {"total", e.total},
                                     {"north", e.north},
                                     {"east", e.east},
                                     {"down", e.down}});
        if (hasDeclination) answer.emplace_back("declinationChange", d.declination);
        answer.insert(answer.end(), {{"inclinationChange", d.inclination},
                                     {"horizontalChange", d.horizontal},
                                     {"totalChange", d.total},
                                     {"northChange", d.north},
                                     {"eastChange", d.east},
                                     {"downChange", d.down}});
        return answer;
    }

    std::shared_ptr<const Given> given_;
    std::optional<MzGeomagneticField> field_;  ///< none when the settled operation is asked
    bool complete_ = false;
    std::string complaint_;
};

void addOptions(CLI::App& command, const std::shared_ptr<Given>& given) {
    command
        .add_option_function<std::string>(
            "--date",
            [given](const std::string& text) { given->date = dateArgument("--date", text); },
            "Day, or instant, GMT")
        ->type_name(kDateForm)
        ->required();
    command
        .add_option_function<std::string>(
            "--altitude",
            [given](const std::string& text) {
                given->altitude = numberArgument("--altitude", text);
            },
            "Height above the ellipsoid, metres; default 0")
        ->type_name("METRES");
    command.add_option("--model", given->model, "COF, table or SHC file; default IGRF-14")
        ->type_name("FILE");
    command.add_flag("--settled", given->settled, "Answer as the settled operation does");
    command.add_flag("--all", given->all, "Print every component with its name");
}

}  // namespace

void setUpDeclination(CLI::App& command) {
    using Kind = NumberField::Kind;
    const auto given = std::make_shared<Given>();
    const auto questions = std::make_shared<Questions>(given);
    command.footer(kFooter);
    addOptions(command, given);
    NumberQuery::setUp(command,
                       {{"LON", Kind::Longitude, "Longitude, degrees"},
                        {"LAT", Kind::Latitude, "Latitude, degrees"}},
                       [questions](std::span<const double> n) {
                           return questions->answer({n[0], n[1]});
                       },
                       {[questions](bool json) { return questions->begin(json); },
                        [questions] { questions->end(); }});
}

}  // namespace mezalith::app
