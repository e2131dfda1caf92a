// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace mezalith::host {

/// All bytes of the file at `path`. Throws a Failure with the path when it cannot be read.
std::vector<std::byte> readFile(const std::string& path);

/// Whether `path` ends in ".wkb", in letters of either case.
bool isWKBFile(const std::string& path);

/// The file's name without its folders and its last ending: what the layer of a `.wkb` is called.
std::string layerNameOfFile(const std::string& path);

}  // namespace mezalith::host
