// SPDX-License-Identifier: MIT
#include "host/letter_case.hpp"

#include <algorithm>

namespace mezalith::host {
namespace {

char lowerCase(char letter) {
    return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
}

}  // namespace

bool isEqualIgnoringCase(std::string_view a, std::string_view b) {
    return std::ranges::equal(a, b, {}, lowerCase, lowerCase);
}

}  // namespace mezalith::host
