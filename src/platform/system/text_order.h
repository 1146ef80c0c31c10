// The order in which people look for names.
//
// SPDX-License-Identifier: MIT
#pragma once

#include <string>

namespace platform {

/// A key for `text` (UTF-8): texts stand in the order of their keys, compared byte by byte, and
/// with each other where the keys are equal. Letter case is ignored, accented letters stand next to
/// their base letter; the locale in force plays no part, so that every user sees the voices in one
/// order. Linux without ICU orders different letters by code point.
std::string SortKey(const std::string& text);

}  // namespace platform
