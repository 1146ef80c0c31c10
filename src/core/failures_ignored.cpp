// The failure observer of the shipped program: there is none.
//
// SPDX-License-Identifier: MIT
#include "core/attempt.h"

namespace core {

void ObserveFailure(const std::source_location&) noexcept {}

}  // namespace core
