// SPDX-License-Identifier: MIT
#include <mezalith/geomagnetism/magnetic_potential_coefficients.hpp>
#include <mezalith/platform/number_text.hpp>
#include <mezalith/platform/text_file.hpp>

#include <algorithm>
#include <array>
#include <iterator>
#include <utility>

namespace mezalith {
namespace {

constexpr double kSecondsPerYear = 31556926.080000002;
constexpr std::int64_t kLastYear = 9999;

constexpr std::size_t kHeaderFields = 11;
constexpr std::size_t kCoefficientFields = 8;

/// The fields of a line as far as they matter: of those past the longest line that is read only the
/// number counts.
class Fields {
  public:
    explicit Fields(std::string_view line) {
        platform::forEachPiece(line, platform::kBlanks, [this](std::string_view field) {
            if (count_ < fields_.size()) fields_[count_] = field;
            ++count_;
        });
    }

    std::size_t count() const { return count_; }
    std::string_view text(std::size_t index) const { return fields_[index]; }
    double number(std::size_t index) const { return platform::leadingNumber(fields_[index]); }
    std::int64_t integer(std::size_t index) const {
        return platform::leadingInteger(fields_[index]);
    }

  private:
    std::array<std::string_view, kHeaderFields> fields_;
    std::size_t count_ = 0;
};

bool isASCII(std::string_view text) {
    return std::ranges::none_of(text, [](char c) { return static_cast<unsigned char>(c) > 127; });
}

bool isUsableYear(std::int64_t year) { return year >= -kLastYear && year <= kLastYear; }

/// The model that a header line begins; null when it cannot be used.
std::shared_ptr<MzMagneticModel> modelFromHeader(const Fields& fields) {
    const std::int64_t degree = fields.integer(2);
    const std::int64_t startYear = fields.integer(5), endYear = fields.integer(6);
    const bool usable = degree >= 0 && degree <= MzMagneticPotentialCoefficients::kMaxDegree &&
                        isUsableYear(startYear) && isUsableYear(endYear);
    if (!usable) return nullptr;
    auto model = std::make_shared<MzMagneticModel>();
    model->setName(std::string(fields.text(0)));
    model->setMaxDegree(static_cast<std::uint64_t>(degree));
    model->setMaxSVDegree(static_cast<std::uint64_t>(fields.integer(3)));
    model->setStartDate(platform::startOfYear(startYear));
    model->setEndDate(platform::startOfYear(endYear));
    model->setMinAltitude(fields.number(7));
    model->setMaxAltitude(fields.number(8));
    return model;
}

void addCoefficients(MzMagneticModel& model, const Fields& fields) {
    const std::int64_t degree = fields.integer(0), order = fields.integer(1);
    if (std::cmp_less_equal(degree, model.maxDegree())) {
        model.setGCoefficient(fields.number(2), degree, order);
        model.setHCoefficient(fields.number(3), degree, order);
    }
    if (std::cmp_less_equal(degree, model.maxSVDegree())) {
        model.setGSVCoefficient(fields.number(4), degree, order);
        model.setHSVCoefficient(fields.number(5), degree, order);
    }
}

std::string_view trimmed(std::string_view text, std::string_view set) {
    const std::size_t begin = text.find_first_not_of(set);
    if (begin == std::string_view::npos) return {};
    return text.substr(begin, text.find_last_not_of(set) - begin + 1);
}

std::shared_ptr<MzMagneticModel> newModel(platform::Date date, std::uint64_t degree) {
    auto model = std::make_shared<MzMagneticModel>();
    model->setStartDate(date);
    model->setEndDate(date);
    model->setMaxDegree(degree);
    return model;
}

/// Calls `use` with every degree up to the model's highest, and every order of each.
template <typename Use>
void forEachTerm(const MzMagneticModel& model, const Use& use) {
    const auto last = static_cast<std::int64_t>(model.maxDegree());
    for (std::int64_t n = 0; n <= last; ++n) {
        for (std::int64_t m = 0; m <= n; ++m) use(n, m);
    }
}

std::shared_ptr<MzMagneticModel> extrapolated(const MzMagneticModel& base, double years,
                                              platform::Date date) {
    if (base.maxSVDegree() == 0) return nullptr;
    auto model = newModel(date, std::min(base.maxDegree(), base.maxSVDegree()));
    forEachTerm(*model, [&](std::int64_t n, std::int64_t m) {
        model->setGCoefficient(
            base.gCoefficientOfDegree(n, m) + base.gSVCoefficientOfDegree(n, m) * years, n, m);
        model->setHCoefficient(
            base.hCoefficientOfDegree(n, m) + base.hSVCoefficientOfDegree(n, m) * years, n, m);
    });
    return model;
}

std::shared_ptr<MzMagneticModel> interpolated(const MzMagneticModel& lower,
                                              const MzMagneticModel& upper, double share,
                                              platform::Date date) {
    auto model = newModel(date, std::min(lower.maxDegree(), upper.maxDegree()));
    forEachTerm(*model, [&](std::int64_t n, std::int64_t m) {
        const double g = lower.gCoefficientOfDegree(n, m);
        const double h = lower.hCoefficientOfDegree(n, m);
        model->setGCoefficient(g + (upper.gCoefficientOfDegree(n, m) - g) * share, n, m);
        model->setHCoefficient(h + (upper.hCoefficientOfDegree(n, m) - h) * share, n, m);
    });
    return model;
}

}  // namespace

/// Takes lines one by one and puts finished models into a set of them.
class MzMagneticPotentialCoefficients::Reader {
  public:
    explicit Reader(Models& models) : models_(models) {}

    void takeLine(std::string_view line) {
        const Fields fields(line);
        if (fields.count() == kHeaderFields) {
            finishModel();
            model_ = modelFromHeader(fields);
        } else if (fields.count() == kCoefficientFields && model_ != nullptr) {
            addCoefficients(*model_, fields);
        }
    }

    void finishModel() {
        if (model_ != nullptr) {
            const platform::Date start = model_->startDate().value_or(platform::Date());
            models_[start] = std::move(model_);
        }
        model_ = nullptr;
    }

  private:
    Models& models_;
    std::shared_ptr<MzMagneticModel> model_;
};

std::shared_ptr<MzMagneticPotentialCoefficients> MzMagneticPotentialCoefficients::initWithCOFfile(
    const std::string& path) {
    auto coefficients = std::make_shared<MzMagneticPotentialCoefficients>();
    coefficients->createModelsFromCOFfile(path);
    return coefficients;
}

void MzMagneticPotentialCoefficients::createModelsFromCOFfile(const std::string& path) {
    const auto text = platform::textOfFile(path, kMaxFileSize);
    if (!text || !isASCII(*text)) return;
    Reader reader(models_);
    platform::forEachPiece(*text, platform::kLineEnds,
                           [&](std::string_view line) { reader.takeLine(line); });
    reader.finishModel();
}

std::vector<std::string> MzMagneticPotentialCoefficients::timmedComponentsFromArray(
    std::span<const std::string> array, std::string_view set) const {
    std::vector<std::string> components;
    for (const std::string& text : array) {
        const std::string_view component = trimmed(text, set);
        if (!component.empty()) components.emplace_back(component);
    }
    return components;
}

std::shared_ptr<MzMagneticModel> MzMagneticPotentialCoefficients::magneticModelForDate(
    platform::Date date) const {
    if (!platform::isFinite(date)) return nullptr;
    const auto upper = models_.lower_bound(date);
    if (upper == models_.begin()) return nullptr;
    // A date equal to the last start date counts as being after it.
    const auto& [lastDate, last] = *models_.rbegin();
    if (date >= lastDate) {
        const double years = platform::secondsBetween(lastDate, date) / kSecondsPerYear;
        return extrapolated(*last, years, date);
    }
    const auto lower = std::prev(upper);
    const double share = platform::secondsBetween(lower->first, date) /
                         platform::secondsBetween(lower->first, upper->first);
    return interpolated(*lower->second, *upper->second, share, date);
}

}  // namespace mezalith
