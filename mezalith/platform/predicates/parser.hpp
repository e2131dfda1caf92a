// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/platform/predicates/format_predicate.hpp>
#include <mezalith/platform/predicates/program.hpp>

#include <cstddef>
#include <memory>
#include <span>
#include <string_view>

namespace mezalith::platform::predicates {

/// The predicate that `format` is; null, and why, when it is none.
std::unique_ptr<const Program> parsePredicate(std::string_view format,
                                              std::span<const PredicateArgument> arguments,
                                              PredicateError& error);

/// The error of a format of so many bytes.
PredicateError tooLong(std::size_t bytes);

}  // namespace mezalith::platform::predicates
