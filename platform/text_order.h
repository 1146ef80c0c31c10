// The order in which people look for names.
//
// SPDX-License-Identifier: MIT
#pragma once

#include <string>

namespace platform {

/// Negative, 0 or positive as `left` comes before, with or after `right` (UTF-8). Letter case is
/// ignored, accented letters stand next to their base letter; the locale in force plays no part,
/// so that every user sees the voices in one order.
int CompareText(const std::string& left, const std::string& right);

}  // namespace platform
