// Fonts that windows draw with.
//
// SPDX-License-Identifier: MIT
#pragma once

#include <windows.h>

#include <memory>
#include <optional>
#include <type_traits>

#include "platform/window/control.h"

namespace platform {

struct DeleteFont {
  void operator()(HFONT font) const { DeleteObject(font); }
};
using FontHandle = std::unique_ptr<std::remove_pointer_t<HFONT>, DeleteFont>;

/// The font at this density, in the system's size; the system's own where `font` is absent or
/// names a face that is not installed. `percents` makes it smaller than that size.
FontHandle MakeFont(const std::optional<Font>& font, int dpi, int percents = 100);

}  // namespace platform
