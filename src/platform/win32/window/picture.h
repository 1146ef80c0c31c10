// The logo as a bitmap. It is kept in the program in several widths, each resource numbered by its
// width in pixels, so that on most screens it is shown as it was drawn.
//
// SPDX-License-Identifier: MIT
#pragma once

#include <windows.h>

#include <memory>
#include <type_traits>

namespace platform {

struct DeleteBitmap {
  void operator()(HBITMAP bitmap) const { DeleteObject(bitmap); }
};

/// 32 bits to the pixel, colours multiplied with their opacity: what GdiAlphaBlend wants.
struct Picture {
  std::unique_ptr<std::remove_pointer_t<HBITMAP>, DeleteBitmap> bitmap;
  int width = 0;
  int height = 0;
};

/// The logo in this width. Throws where the system cannot read it.
Picture LogoOfWidth(int width);

}  // namespace platform
