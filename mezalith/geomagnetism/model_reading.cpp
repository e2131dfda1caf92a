// SPDX-License-Identifier: MIT
#include <mezalith/geomagnetism/column_layouts.hpp>
#include <mezalith/geomagnetism/layout_reader.hpp>
#include <mezalith/geomagnetism/model_reading.hpp>

#include <algorithm>
#include <ranges>
#include <utility>
#include <vector>

namespace mezalith::detail {
namespace {

using Contents = MzGeomagneticModel::Contents;
using Epoch = MzGeomagneticModel::Epoch;
using Coefficients = std::vector<MzGaussCoefficients>;

constexpr std::size_t kHeaderFields = 11;
constexpr std::size_t kCoefficientFields = 8;

class COFReader : LayoutReader {
  public:
    using LayoutReader::LayoutReader;

    ModelReading read() {
        bool well = true;
        while (well && lines_.next()) {
            if (lines_.count() == kHeaderFields) {
                well = finishEpoch() && beginEpoch();
            } else if (lines_.count() == kCoefficientFields && !blocks_.empty()) {
                well = addCoefficients();
            } else {
                well = fail(std::to_string(lines_.count()) + " fields where " +
                            (blocks_.empty() ? "11 begin an epoch"
                                             : "11 begin an epoch and 8 are coefficients"));
            }
        }
        if (well && finishEpoch()) sortEpochs();
        return {failure_.empty() ? contents() : Contents(), failure_};
    }

  private:
    struct Block {
        std::string name;
        Epoch epoch;
        Coefficients rates;
        double firstYear = 0;
        double lastYear = 0;
    };

    bool beginEpoch() {
        const auto& fields = lines_.fields();
        const auto epoch = year(fields[1]), first = year(fields[5]), last = year(fields[6]);
        const auto degree = integer(fields[2], 1, MzGeomagneticModel::kMaxDegree);
        const auto rateDegree = integer(fields[3], 0, MzGeomagneticModel::kMaxDegree);
        if (!epoch || !first || !last || !degree || !rateDegree) return false;
        const std::size_t count = MzGeomagneticModel::countToDegree(*degree);
        blocks_.push_back({std::string(fields[0]),
                           {*epoch, *degree, Coefficients(count)},
                           Coefficients(MzGeomagneticModel::countToDegree(*rateDegree)),
                           *first,
                           *last});
        seen_.assign(count, false);
        seen_[0] = true;
        return true;
    }

    bool addCoefficients() {
        const auto& fields = lines_.fields();
        Block& block = blocks_.back();
        const auto degree = integer(fields[0], 1, block.epoch.degree);
        const auto order = integer(fields[1], 0, degree.value_or(0));
        const auto g = number(fields[2]), h = number(fields[3]);
        const auto gRate = number(fields[4]), hRate = number(fields[5]);
        if (!degree || !order || !g || !h || !gRate || !hRate) return false;
        const std::size_t index = MzGeomagneticModel::indexOf(*degree, *order);
        if (seen_[index]) return fail("these coefficients came before");
        seen_[index] = true;
        block.epoch.coefficients[index] = {*g, *h};
        if (index < block.rates.size()) block.rates[index] = {*gRate, *hRate};
        return true;
    }

    bool finishEpoch() {
        if (blocks_.empty() || std::ranges::find(seen_, false) == seen_.end()) return true;
        return fail("coefficients of the epoch before are missing");
    }

    void sortEpochs() {
        const auto yearOf = [](const Block& block) { return block.epoch.year; };
        std::ranges::sort(blocks_, {}, yearOf);
        if (std::ranges::adjacent_find(blocks_, {}, yearOf) != blocks_.end()) {
            fail("two epochs are of the same year");
        }
    }

    Contents contents() {
        Contents contents;
        contents.name = blocks_.back().name;
        contents.rates = std::move(blocks_.back().rates);
        contents.firstYear = std::ranges::min(blocks_ | std::views::transform(&Block::firstYear));
        contents.lastYear = std::ranges::max(blocks_ | std::views::transform(&Block::lastYear));
        for (Block& block : blocks_) contents.epochs.push_back(std::move(block.epoch));
        return contents;
    }

    std::vector<Block> blocks_;
    std::vector<bool> seen_;
};

}  // namespace

ModelReading readModel(std::string_view text) {
    Lines lines(text);
    if (!lines.next()) return {{}, "there is nothing in it"};
    if (lines.count() == kHeaderFields) return COFReader(text).read();
    if (isSHC(lines.fields())) return readSHC(text);
    // A table has a line of words above the one that begins it.
    if (isTable(lines.fields()) || (lines.next() && isTable(lines.fields())))
        return readTable(text);
    return {{}, "neither a COF, a table nor an SHC file of Gauss coefficients"};
}

}  // namespace mezalith::detail
