// SPDX-License-Identifier: MIT
#include "host/wkb_file.hpp"

#include "host/failure.hpp"
#include "host/letter_case.hpp"

#include <array>
#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <memory>

namespace mezalith::host {
namespace {

struct CloseFile {
    void operator()(std::FILE* file) const { std::fclose(file); }
};

}  // namespace

std::vector<std::byte> readFile(const std::string& path) {
    const std::unique_ptr<std::FILE, CloseFile> file(std::fopen(path.c_str(), "rb"));
    if (file == nullptr) throw Failure(path, std::generic_category().message(errno));
    std::vector<std::byte> bytes;
    std::array<std::byte, 1 << 16> block;
    while (const std::size_t count = std::fread(block.data(), 1, block.size(), file.get())) {
        bytes.insert(bytes.end(), block.begin(), block.begin() + count);
    }
    if (std::ferror(file.get()) != 0) throw Failure(path, std::generic_category().message(errno));
    return bytes;
}

MzWKBReading readWKB(std::span<const std::byte> bytes) {
    MzWKBReading reading = MzReadWKB(bytes, MzTrailingBytes::Allowed);
    if (!reading) throw Failure(reading.error);
    return reading;
}

bool isWKBFile(const std::string& path) {
    return isEqualIgnoringCase(std::filesystem::path(path).extension().string(), ".wkb");
}

std::string layerNameOfFile(const std::string& path) {
    return std::filesystem::path(path).stem().string();
}

}  // namespace mezalith::host
