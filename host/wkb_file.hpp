// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/geometry/wkb_reader.hpp>

#include <cstddef>
#include <span>
#include <string>
#include <vector>

namespace mezalith::host {

/// All bytes of the file at `path`. Throws a Failure with the path when it cannot be read.
std::vector<std::byte> readFile(const std::string& path);

/// One geometry in any form of Well-Known Binary; what follows it is left alone. Throws a Failure
/// that names the byte ("byte 9: ...") when there is none.
MzWKBReading readWKB(std::span<const std::byte> bytes);

/// Whether `path` ends in ".wkb", in letters of either case.
bool isWKBFile(const std::string& path);

/// The file's name without its folders and its last ending: what the layer of a `.wkb` is called.
std::string layerNameOfFile(const std::string& path);

}  // namespace mezalith::host
