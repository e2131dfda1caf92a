// SPDX-License-Identifier: MIT
#include <mezalith/geomagnetism/geomagnetic_model.hpp>
#include <mezalith/geomagnetism/model_reading.hpp>
#include <mezalith/platform/resource_bundle.hpp>
#include <mezalith/platform/text_file.hpp>

#include <algorithm>
#include <utility>

namespace mezalith {
namespace {

using Coefficients = std::vector<MzGaussCoefficients>;

/// What lies above the degree of `coefficients` is 0.
MzGaussCoefficients at(const Coefficients& coefficients, std::size_t index) {
    return index < coefficients.size() ? coefficients[index] : MzGaussCoefficients{};
}

}  // namespace

std::shared_ptr<const MzGeomagneticModel> MzGeomagneticModel::modelWithContentsOfFile(
    const std::string& path, std::string* why) {
    const auto text = platform::textOfFile(path, kMaxFileSize, why);
    return text ? modelWithText(*text, why) : nullptr;
}

std::shared_ptr<const MzGeomagneticModel> MzGeomagneticModel::modelWithText(std::string_view text,
                                                                            std::string* why) {
    auto reading = detail::readModel(text);
    if (why != nullptr) *why = reading.failure;
    if (!reading.failure.empty()) return nullptr;
    return std::make_shared<const MzGeomagneticModel>(std::move(reading.contents));
}

std::shared_ptr<const MzGeomagneticModel> MzGeomagneticModel::internationalReferenceField() {
    static const auto model = [] {
        const auto path = platform::ResourceBundle::library().pathForResource("IGRF14.shc");
        return path ? modelWithContentsOfFile(*path) : nullptr;
    }();
    return model;
}

MzGeomagneticModel::MzGeomagneticModel(Contents contents) : contents_(std::move(contents)) {
    if (contents_.epochs.empty()) contents_.epochs.emplace_back();
    for (const Epoch& epoch : contents_.epochs) degree_ = std::max(degree_, epoch.degree);
    degree_ = std::min(degree_, kMaxDegree);
}

MzGeomagneticModel::Validity MzGeomagneticModel::validityInYear(double year) const {
    if (!(year >= firstYear())) return Validity::NotYet;
    return year > lastYear() ? Validity::Expired : Validity::Valid;
}

std::size_t MzGeomagneticModel::segmentOf(double year) const {
    const auto isLater = [year](const Epoch& epoch) { return epoch.year > year; };
    const auto next = std::ranges::find_if(epochs(), isLater) - epochs().begin();
    const std::size_t count = epochs().size();
    const std::size_t last = contents_.rates.empty() && count > 1 ? count - 2 : count - 1;
    return next == 0 ? 0 : std::min(static_cast<std::size_t>(next) - 1, last);
}

void MzGeomagneticModel::coefficientsInYear(double year, std::span<MzGaussCoefficients> values,
                                            std::span<MzGaussCoefficients> rates) const {
    const std::size_t segment = segmentOf(year);
    fillRates(segment, rates);
    const Epoch& epoch = epochs()[segment];
    const double years = year - epoch.year;
    for (std::size_t i = 0; i < values.size(); ++i) {
        const MzGaussCoefficients value = at(epoch.coefficients, i);
        values[i] = {value.g + rates[i].g * years, value.h + rates[i].h * years};
    }
}

void MzGeomagneticModel::fillRates(std::size_t segment,
                                   std::span<MzGaussCoefficients> rates) const {
    const bool isLast = segment + 1 == epochs().size();
    for (std::size_t i = 0; i < rates.size(); ++i) {
        if (isLast) {
            rates[i] = at(contents_.rates, i);
            continue;
        }
        const Epoch &lower = epochs()[segment], &upper = epochs()[segment + 1];
        const double years = upper.year - lower.year;
        const MzGaussCoefficients from = at(lower.coefficients, i), to = at(upper.coefficients, i);
        rates[i] = {(to.g - from.g) / years, (to.h - from.h) / years};
    }
}

}  // namespace mezalith
