// SPDX-License-Identifier: MIT
#include <mezalith/platform/images/image_decoder.hpp>
#include <mezalith/platform/number_text.hpp>
#include <tests/golden/golden.hpp>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <optional>
#include <sstream>
#include <vector>

namespace mezalith::golden {
namespace {

using platform::Bitmap;
using platform::CairoPort;
using platform::Image;
using ::testing::AssertionFailure;
using ::testing::AssertionResult;
using ::testing::AssertionSuccess;

constexpr double textTolerance = 2e-6;
constexpr double textUnit = 1e-6;

std::optional<std::string> contents(const std::filesystem::path& file) {
    std::ifstream stream(file, std::ios::binary);
    if (!stream) {
        return std::nullopt;
    }
    return std::string(std::istreambuf_iterator<char>(stream), {});
}

void writeText(const std::filesystem::path& file, const std::string& text) {
    std::filesystem::create_directories(file.parent_path());
    std::ofstream(file, std::ios::binary) << text;
}

void writePicture(const std::filesystem::path& file, const Bitmap& bitmap) {
    std::filesystem::create_directories(file.parent_path());
    const auto image = Image::imageWithBitmap(bitmap);
    const auto port = CairoPort::pixelPort(image->size());
    port->drawImageInRect(image.get(), {{0, 0}, image->size()});
    port->writePNG(file);
}

std::optional<Bitmap> readPicture(const std::filesystem::path& file) {
    const auto bytes = contents(file);
    const auto decoded =
        bytes ? platform::decodeImage(std::as_bytes(std::span(*bytes))) : platform::DecodedImage();
    if (decoded.image == nullptr) {
        return std::nullopt;
    }
    return *decoded.image->bitmapForPixelSize(decoded.image->size());
}

std::optional<double> numberIn(const std::string& word) {
    double value = 0;
    const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), value);
    const bool isAll = error == std::errc() && end == word.data() + word.size();
    return isAll ? std::optional(value) : std::nullopt;
}

std::string roundedWord(const std::string& word) {
    const auto number = numberIn(word);
    if (!number) {
        return word;
    }
    const double rounded = std::round(*number / textUnit) * textUnit;
    return platform::shortestText(std::stod(std::to_string(rounded)) + 0.0);
}

bool isSameWord(const std::string& a, const std::string& b) {
    const auto x = numberIn(a);
    const auto y = numberIn(b);
    return x && y ? std::abs(*x - *y) <= textTolerance : a == b;
}

/// Words apart from what stands between them: spaces, line ends and brackets.
std::vector<std::string> pieces(const std::string& text) {
    std::vector<std::string> found(1);
    for (const char c : text) {
        if (std::string_view(" \n[]").find(c) != std::string_view::npos) {
            found.emplace_back(1, c);
            found.emplace_back();
        } else {
            found.back() += c;
        }
    }
    return found;
}

int channelOf(std::uint32_t pixel, int shift) { return static_cast<int>(pixel >> shift & 255); }

/// White where nothing differs, the redder the more it does.
Bitmap differencePicture(const Bitmap& a, const Bitmap& b) {
    Bitmap picture = Bitmap::bitmapWithSize(a.width, a.height);
    for (std::size_t i = 0; i < picture.pixels.size(); ++i) {
        int most = 0;
        for (const int shift : {0, 8, 16, 24}) {
            most = std::max(
                most, std::abs(channelOf(a.pixels[i], shift) - channelOf(b.pixels[i], shift)));
        }
        const auto rest = static_cast<std::uint32_t>(255 - std::min(255, 4 * most));
        picture.pixels[i] = 0xFFFF0000 | rest << 8 | rest;
    }
    return picture;
}

/// Where the golden is, was not, or is now.
AssertionResult renewed(const std::filesystem::path& file) {
    return AssertionFailure() << "renewed " << file.string() << ": look at it, and run again";
}

AssertionResult differs(const std::filesystem::path& expected, const std::filesystem::path& actual,
                        bool exists) {
    return AssertionFailure() << expected.string() << (exists ? " differs" : " is missing")
                              << "; see " << actual.string()
                              << ", and set MEZALITH_RENEW_GOLDENS if that is right";
}

}  // namespace

Folders Folders::project() {
    const std::filesystem::path root = MEZALITH_SOURCE_DIR;
    return {root / "tests/golden/expected", root / "build/golden",
            std::getenv("MEZALITH_RENEW_GOLDENS") != nullptr};
}

std::string roundedNumbers(const std::string& text) {
    std::string result;
    for (const std::string& piece : pieces(text)) {
        result += roundedWord(piece);
    }
    return result;
}

bool isSameText(const std::string& a, const std::string& b) {
    return std::ranges::equal(pieces(a), pieces(b), isSameWord);
}

Difference difference(const Bitmap& a, const Bitmap& b) {
    Difference result;
    for (std::size_t i = 0; i < a.pixels.size(); ++i) {
        for (const int shift : {0, 8, 16, 24}) {
            const int channel =
                std::abs(channelOf(a.pixels[i], shift) - channelOf(b.pixels[i], shift));
            result.largest = std::max(result.largest, channel);
            result.mean += channel;
        }
    }
    result.mean /= 4.0 * static_cast<double>(a.pixels.size());
    return result;
}

AssertionResult matchesText(const std::string& name, const std::string& actual,
                            const Folders& folders) {
    const auto file = folders.expected / (name + ".txt");
    const auto expected = contents(file);
    if (expected && isSameText(*expected, actual)) {
        return AssertionSuccess();
    }
    if (folders.renews) {
        writeText(file, roundedNumbers(actual));
        return renewed(file);
    }
    const auto seen = folders.actual / (name + ".txt");
    writeText(seen, roundedNumbers(actual));
    return differs(file, seen, expected.has_value());
}

AssertionResult matchesPicture(const std::string& name, const Bitmap& actual,
                               const Tolerance& tolerance, const Folders& folders) {
    const auto file = folders.expected / (name + ".png");
    const auto expected = readPicture(file);
    const bool isSameSize =
        expected && expected->width == actual.width && expected->height == actual.height;
    const Difference found = isSameSize ? difference(*expected, actual) : Difference{};
    if (isSameSize && found.largest <= tolerance.channel && found.mean <= tolerance.mean) {
        return AssertionSuccess();
    }
    if (folders.renews) {
        writePicture(file, actual);
        return renewed(file);
    }
    const auto seen = folders.actual / (name + "-actual.png");
    writePicture(seen, actual);
    if (isSameSize) {
        writePicture(folders.actual / (name + "-difference.png"),
                     differencePicture(*expected, actual));
    }
    return differs(file, seen, expected.has_value())
           << "; largest difference " << found.largest << ", mean " << found.mean;
}

Bitmap pictureOf(MzSize size, double pixelRatio,
                 const std::function<void(platform::GraphicsPort&)>& draw) {
    const auto port = CairoPort::pixelPort(size, pixelRatio);
    port->setRGBFillColor(1, 1, 1, 1);
    port->addLines(std::array{MzPoint{0, 0}, MzPoint{size.width, 0},
                              MzPoint{size.width, size.height}, MzPoint{0, size.height}});
    port->drawPath(platform::PathDrawingMode::Fill);
    draw(*port);
    Bitmap bitmap = Bitmap::bitmapWithSize(port->pixelWidth(), port->pixelHeight());
    for (int row = 0; row < bitmap.height; ++row) {
        std::ranges::copy(port->pixelRow(row), bitmap.row(row).begin());
    }
    return bitmap;
}

}  // namespace mezalith::golden
