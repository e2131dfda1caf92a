// SPDX-License-Identifier: MIT
#include <mezalith/index/indexable.hpp>

namespace mezalith {

MzIndexable::~MzIndexable() = default;

}  // namespace mezalith
