// SPDX-License-Identifier: MIT
#include "host/failure.hpp"

namespace mezalith::host {

std::string inOneLine(const std::string& text) {
    std::string line;
    for (const char c : text) {
        const auto code = static_cast<unsigned char>(c);
        const bool blank = code <= ' ' || code == 0x7f;
        if (!blank) {
            line += c;
        } else if (!line.empty() && line.back() != ' ') {
            line += ' ';
        }
    }
    if (!line.empty() && line.back() == ' ') line.pop_back();
    return line;
}

Failure::Failure(std::string what, const std::string& why)
    : std::runtime_error(inOneLine(what.append(": ").append(why))) {}

Failure::Failure(const MzReadError& error) : std::runtime_error(inOneLine(error.text())) {}

Failure Failure::within(const std::string& what) const { return {what, this->what()}; }

}  // namespace mezalith::host
