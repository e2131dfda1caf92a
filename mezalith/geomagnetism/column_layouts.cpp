// SPDX-License-Identifier: MIT
#include <mezalith/geomagnetism/column_layouts.hpp>
#include <mezalith/geomagnetism/layout_reader.hpp>

#include <algorithm>
#include <optional>
#include <span>
#include <utility>
#include <vector>

namespace mezalith::detail {
namespace {

using Contents = MzGeomagneticModel::Contents;
using Epoch = MzGeomagneticModel::Epoch;
using Coefficients = std::vector<MzGaussCoefficients>;
using Kind = double MzGaussCoefficients::*;

constexpr int kMaxDegree = MzGeomagneticModel::kMaxDegree;
constexpr std::size_t kMostCoefficients = MzGeomagneticModel::countToDegree(kMaxDegree);

/// What both layouts share: columns that are filled line by line. They have room for the highest
/// degree until the one they go to is known.
class ColumnReader : protected LayoutReader {
  protected:
    using LayoutReader::LayoutReader;

    bool addEpoch(std::string_view yearText) {
        const auto value = year(yearText);
        if (!value) return false;
        if (!epochs_.empty() && *value <= epochs_.back().year) {
            return fail("the years do not ascend");
        }
        epochs_.push_back({*value, 0, Coefficients(kMostCoefficients)});
        return true;
    }

    void addRates() { rates_.resize(kMostCoefficients); }

    /// Takes the values of the current line, which begin with the field at `first`, for the g or h
    /// of a degree and order.
    bool addValues(std::size_t first, Kind kind, int degree, int order) {
        const std::size_t wanted = first + epochs_.size() + (rates_.empty() ? 0 : 1);
        if (lines_.count() != wanted) {
            return fail(std::to_string(lines_.count()) + " fields, not " + std::to_string(wanted));
        }
        const std::size_t index = MzGeomagneticModel::indexOf(degree, order);
        std::vector<bool>& seen = kind == &MzGaussCoefficients::g ? seenG_ : seenH_;
        if (seen[index]) return fail("these coefficients came before");
        seen[index] = true;
        for (std::size_t i = 0; first + i < wanted; ++i) {
            const auto value = number(lines_.fields()[first + i]);
            if (!value) return false;
            column(i)[index].*kind = *value;
        }
        return true;
    }

    /// Cuts the columns off above their degree.
    bool finish(int leastDegree, int degree) {
        for (int n = leastDegree; n <= degree; ++n) {
            for (int m = 0; m <= n; ++m) {
                const std::size_t index = MzGeomagneticModel::indexOf(n, m);
                if (!seenG_[index] || (m > 0 && !seenH_[index])) {
                    return fail("coefficients of degree " + std::to_string(n) + " are missing");
                }
            }
        }
        for (Epoch& epoch : epochs_) {
            epoch.degree = degree;
            epoch.coefficients.resize(MzGeomagneticModel::countToDegree(degree));
        }
        return true;
    }

    std::vector<Epoch> epochs_;
    Coefficients rates_;

  private:
    Coefficients& column(std::size_t index) {
        return index < epochs_.size() ? epochs_[index].coefficients : rates_;
    }

    std::vector<bool> seenG_ = std::vector<bool>(kMostCoefficients);
    std::vector<bool> seenH_ = std::vector<bool>(kMostCoefficients);
};

// --- the table -----------------------------------------------------------------------------------

class TableReader : ColumnReader {
  public:
    using ColumnReader::ColumnReader;

    ModelReading read() {
        while (lines_.next() && !isTable(lines_.fields())) {
        }
        int degree = 1;
        bool well = readYears();
        while (well && lines_.next()) well = readRow(degree);
        if (!well || !finish(1, degree)) return {{}, failure_};
        const double first = epochs_.front().year;
        // Without secular variation the field stays as it is.
        rates_.resize(rates_.empty() ? 1 : MzGeomagneticModel::countToDegree(degree));
        return {{lines_.title(), std::move(epochs_), std::move(rates_), first, lastYear_}, {}};
    }

  private:
    bool readYears() {
        for (std::size_t i = 3; i < lines_.count(); ++i) {
            const std::string_view text = lines_.fields()[i];
            const bool isSpan = text.find('-', 1) != std::string_view::npos;
            if (isSpan && i + 1 == lines_.count() && !epochs_.empty()) return readSpan(text);
            if (!addEpoch(text)) return false;
            lastYear_ = epochs_.back().year;
        }
        return !epochs_.empty() || fail("there are no years");
    }

    /// The years of the secular variation, as "2025-30".
    bool readSpan(std::string_view text) {
        const std::size_t dash = text.find('-', 1);
        const auto first = integer(text.substr(0, dash), 0, 9998);
        const auto last = integer(text.substr(dash + 1), 0, 99);
        if (!first || !last) return false;
        const int century = *first / 100 * 100;
        lastYear_ = century + *last + (century + *last <= *first ? 100 : 0);
        addRates();
        return true;
    }

    bool readRow(int& highest) {
        const auto& fields = lines_.fields();
        const bool isH = fields[0] == "h";
        if (!isH && fields[0] != "g") return fail(quoted(fields[0]) + " is neither g nor h");
        if (lines_.count() < 3) return fail("degree and order are missing");
        const auto degree = integer(fields[1], 1, kMaxDegree);
        const auto order = integer(fields[2], isH ? 1 : 0, degree.value_or(kMaxDegree));
        if (!degree || !order) return false;
        highest = std::max(highest, *degree);
        return addValues(3, isH ? &MzGaussCoefficients::h : &MzGaussCoefficients::g, *degree,
                         *order);
    }

    double lastYear_ = 0;
};

// --- SHC -----------------------------------------------------------------------------------------

class SHCReader : ColumnReader {
  public:
    using ColumnReader::ColumnReader;

    ModelReading read() {
        bool well = lines_.next() && readHeader() && readYears();
        while (well && lines_.next()) well = readRow();
        if (!well || !finish(least_, most_)) return {{}, failure_};
        const double first = first_.value_or(epochs_.front().year);
        const double last = last_.value_or(epochs_.back().year);
        return {{lines_.title(), std::move(epochs_), {}, first, last}, {}};
    }

  private:
    bool readHeader() {
        const auto& fields = lines_.fields();
        const auto least = integer(fields[0], 0, kMaxDegree);
        const auto most = integer(fields[1], 1, kMaxDegree);
        const auto count = integer(fields[2], 1, static_cast<int>(Lines::kMaxFields));
        const auto order = integer(fields[3], 1, 2);
        if (!least || !most || !count || !order) return false;
        least_ = std::max(*least, 1);
        most_ = *most;
        count_ = static_cast<std::size_t>(*count);
        if (lines_.count() == 5) return true;
        first_ = year(fields[5]);
        last_ = year(fields[6]);
        return first_ && last_;
    }

    bool readYears() {
        if (!lines_.next() || lines_.count() != count_) {
            return fail("not the " + std::to_string(count_) + " years that were promised");
        }
        return std::ranges::all_of(lines_.fields(),
                                   [this](std::string_view text) { return addEpoch(text); });
    }

    bool readRow() {
        if (lines_.count() < 2) return fail("degree and order are missing");
        const auto degree = integer(lines_.fields()[0], least_, most_);
        const int most = degree.value_or(most_);
        const auto order = integer(lines_.fields()[1], -most, most);
        if (!degree || !order) return false;
        return *order < 0 ? addValues(2, &MzGaussCoefficients::h, *degree, -*order)
                          : addValues(2, &MzGaussCoefficients::g, *degree, *order);
    }

    int least_ = 1;
    int most_ = 1;
    std::size_t count_ = 0;
    std::optional<double> first_;
    std::optional<double> last_;
};

}  // namespace

bool isTable(Fields fields) { return fields.size() >= 3 && fields[0] == "g/h"; }

ModelReading readTable(std::string_view text) { return TableReader(text).read(); }

bool isSHC(Fields fields) {
    const auto isNumber = [](std::string_view text) {
        return platform::numberFromText(text).has_value();
    };
    return (fields.size() == 5 || fields.size() == 7) && std::ranges::all_of(fields, isNumber);
}

ModelReading readSHC(std::string_view text) { return SHCReader(text).read(); }

}  // namespace mezalith::detail
