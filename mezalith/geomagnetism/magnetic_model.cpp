// SPDX-License-Identifier: MIT
#include <mezalith/geomagnetism/magnetic_model.hpp>

#include <algorithm>
#include <array>
#include <charconv>

namespace mezalith {
namespace {

/// The key of a coefficient, without an allocation: "degree_order" and one of "_g", "_h", "_g_sv"
/// and "_h_sv".
class Key {
  public:
    Key(std::int64_t degree, std::int64_t order, std::string_view suffix) {
        char* end = text_.data();
        end = std::to_chars(end, last(), degree).ptr;
        *end++ = '_';
        end = std::to_chars(end, last(), order).ptr;
        end = std::ranges::copy(suffix, end).out;
        length_ = static_cast<std::size_t>(end - text_.data());
    }

    std::string_view view() const { return {text_.data(), length_}; }

  private:
    char* last() { return text_.data() + text_.size(); }

    // Two numbers of 20 characters and the rest.
    std::array<char, 48> text_;
    std::size_t length_;
};

double valueFor(const MzMagneticModel::Cache& cache, const Key& key) {
    const auto found = cache.find(key.view());
    return found == cache.end() ? 0.0 : found->second;
}

void setValue(MzMagneticModel::Cache& cache, const Key& key, double value) {
    cache.insert_or_assign(std::string(key.view()), value);
}

}  // namespace

double MzMagneticModel::gCoefficientOfDegree(std::int64_t degree, std::int64_t order) const {
    return valueFor(cache_, {degree, order, "_g"});
}

double MzMagneticModel::hCoefficientOfDegree(std::int64_t degree, std::int64_t order) const {
    return valueFor(cache_, {degree, order, "_h"});
}

double MzMagneticModel::gSVCoefficientOfDegree(std::int64_t degree, std::int64_t order) const {
    return valueFor(cache_, {degree, order, "_g_sv"});
}

double MzMagneticModel::hSVCoefficientOfDegree(std::int64_t degree, std::int64_t order) const {
    return valueFor(cache_, {degree, order, "_h_sv"});
}

void MzMagneticModel::setGCoefficient(double coefficient, std::int64_t degree, std::int64_t order) {
    setValue(cache_, {degree, order, "_g"}, coefficient);
}

void MzMagneticModel::setHCoefficient(double coefficient, std::int64_t degree, std::int64_t order) {
    setValue(cache_, {degree, order, "_h"}, coefficient);
}

void MzMagneticModel::setGSVCoefficient(double coefficient, std::int64_t degree,
                                        std::int64_t order) {
    setValue(cache_, {degree, order, "_g_sv"}, coefficient);
}

void MzMagneticModel::setHSVCoefficient(double coefficient, std::int64_t degree,
                                        std::int64_t order) {
    setValue(cache_, {degree, order, "_h_sv"}, coefficient);
}

}  // namespace mezalith
