// See page_zoom.h.
//
// SPDX-License-Identifier: MIT
#include "platform/linux/window/page_zoom.h"

#include <algorithm>
#include <array>

namespace platform {
namespace {

constexpr std::array kPercents = {50, 67, 80, 90, 100, 110, 125, 150, 175, 200, 250, 300};
constexpr int kNormal = 4;  // the index of 100

bool IsControlHeld(guint state) {
  return (state & gtk_accelerator_get_default_mod_mask() & ~GDK_SHIFT_MASK) == GDK_CONTROL_MASK;
}

}  // namespace

PageZoom::PageZoom(WebKitWebView* view)
    : mView(view),
      mStep(kNormal),
      mWheel(Connect<gboolean(GdkEventScroll*)>(
          view, "scroll-event", [this](GdkEventScroll* wheel) { return HandleWheel(*wheel); })) {}

bool PageZoom::HandleKey(const GdkEventKey& key) {
  if (!IsControlHeld(key.state)) return false;
  switch (key.keyval) {
    case GDK_KEY_plus:
    case GDK_KEY_equal:  // plus without Shift on many keyboards
    case GDK_KEY_KP_Add:
      ZoomTo(mStep + 1);
      return true;
    case GDK_KEY_minus:
    case GDK_KEY_KP_Subtract:
      ZoomTo(mStep - 1);
      return true;
    case GDK_KEY_0:
    case GDK_KEY_KP_0:
      ZoomTo(kNormal);
      return true;
    default:
      return false;
  }
}

/// Touch pads report parts of a step.
bool PageZoom::HandleWheel(const GdkEventScroll& wheel) {
  if (!IsControlHeld(wheel.state)) return false;
  if (wheel.direction == GDK_SCROLL_UP) ZoomTo(mStep + 1);
  if (wheel.direction == GDK_SCROLL_DOWN) ZoomTo(mStep - 1);
  if (wheel.direction == GDK_SCROLL_SMOOTH) {
    mTurned -= wheel.delta_y;
    const int steps = static_cast<int>(mTurned);
    mTurned -= steps;
    ZoomTo(mStep + steps);
  }
  return true;
}

void PageZoom::ZoomTo(int step) {
  mStep = std::clamp(step, 0, static_cast<int>(kPercents.size()) - 1);
  webkit_web_view_set_zoom_level(mView, kPercents.at(static_cast<std::size_t>(mStep)) / 100.0);
}

}  // namespace platform
