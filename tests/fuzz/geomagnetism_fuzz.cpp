// SPDX-License-Identifier: MIT
#include <mezalith/geomagnetism/geomagnetic_field.hpp>
#include <mezalith/geomagnetism/legendre_polynomial.hpp>
#include <mezalith/geomagnetism/magnetic_potential_coefficients.hpp>

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <string>
#include <string_view>
#include <vector>

#include <unistd.h>

// Makes models of any bytes, by the readers of all layouts, and asks everything of them.

namespace mezalith {
namespace {

void require(bool holds) {
    if (!holds) std::abort();
}

/// A file of its own for each process that fuzzes; the settled reader takes nothing else.
const std::string& filePath() {
    static const std::string path = "/tmp/mezalith-geomagnetism-fuzz-" + std::to_string(getpid());
    return path;
}

double sumOf(const MzMagneticElements& e) {
    return e.north + e.east + e.down + e.horizontal + e.total + e.declination + e.inclination;
}

void askField(const MzGeomagneticModel& model) {
    double sum = 0;
    for (const double year : {model.firstYear(), 1987.3, 2003.0, model.lastYear(), 9999.0}) {
        const MzGeomagneticField field(model, year);
        sum += sumOf(field.elementsAt({10.75, 59.91}, 1000)) + sumOf(field.annualChangeAt({0, 90}));
        sum += static_cast<double>(model.validityInYear(year));
    }
    volatile double used = sum;
    static_cast<void>(used);
}

void readStrictly(std::string_view text) {
    std::string why;
    const auto model = MzGeomagneticModel::modelWithText(text, &why);
    require((model == nullptr) == !why.empty());
    require(why.size() < 300);
    if (model == nullptr) return;
    require(model->degree() >= 1 && model->degree() <= MzGeomagneticModel::kMaxDegree);
    require(!model->epochs().empty());
    askField(*model);
}

double sumOf(const MzMagneticModel& model) {
    require(model.maxDegree() <= MzMagneticPotentialCoefficients::kMaxDegree);
    const auto degree = static_cast<std::int64_t>(model.maxDegree());
    return model.gCoefficientOfDegree(degree, 0) + model.hCoefficientOfDegree(degree, degree) +
           static_cast<double>(model.cache().size());
}

void readLeniently(std::string_view text) {
    std::ofstream(filePath(), std::ios::binary | std::ios::trunc) << text;
    const auto coefficients = MzMagneticPotentialCoefficients::initWithCOFfile(filePath());
    double sum = 0;
    for (const auto& [start, model] : coefficients->models()) {
        require(start == model->startDate());
        sum += sumOf(*model);
        for (const double seconds : {-1.0, 0.0, 1.0}) {
            const auto date = start + std::chrono::duration<double>(seconds);
            if (const auto dated = coefficients->magneticModelForDate(date)) sum += sumOf(*dated);
        }
    }
    volatile double used = sum;
    static_cast<void>(used);
}

}  // namespace
}  // namespace mezalith

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    mezalith::readStrictly(text);
    mezalith::readLeniently(text);
    return 0;
}
