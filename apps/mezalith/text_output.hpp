// SPDX-License-Identifier: MIT
#pragma once

#include "host/data_source.hpp"

#include <cstddef>
#include <cstdio>
#include <string>
#include <string_view>

namespace mezalith::app {

/// A stream of results, mostly standard output. A full disk and a closed pipe are failures, not
/// silence: both operations throw a host::Failure that names the stream.
class TextOutput {
  public:
    /// `stream` is borrowed; `name` is what messages call it.
    explicit TextOutput(std::FILE* stream = stdout, std::string name = "standard output");

    void write(std::string_view text);
    /// Hands on what is buffered. To be called at the end, as it is the last chance to fail.
    void finish();

  private:
    [[noreturn]] void fail() const;

    std::FILE* stream_;
    std::string name_;
};

/// One JSON object, built field by field in the order of the calls.
class JsonObject {
  public:
    JsonObject& add(std::string_view key, double value);
    JsonObject& add(std::string_view key, std::size_t value);
    JsonObject& add(std::string_view key, std::string_view value);
    /// `json` is a value in JSON already.
    JsonObject& addJson(std::string_view key, std::string_view json);
    std::string text() const { return "{" + fields_ + "}"; }

  private:
    std::string fields_;
};

/// A line on standard error about records that cannot be used, if there are any.
void tellUnusable(const std::string& source, const std::string& layer,
                  const host::Unusable& unusable);

/// The shortest text that reads back to `value`; "null" for what JSON has no number for.
std::string jsonNumber(double value);
/// With quotes and escapes; bytes that are not UTF-8 become U+FFFD.
std::string jsonString(std::string_view text);

/// "west south east north", or "none" for an empty box.
std::string boundsText(const host::BoundingBox& box);
/// "[west,south,east,north]", or "null" for an empty box.
std::string boundsJson(const host::BoundingBox& box);

}  // namespace mezalith::app
