// Zooming a page by keyboard and wheel.
//
// SPDX-License-Identifier: MIT
#pragma once

#include <webkit2/webkit2.h>

#include "platform/linux/signals.h"

namespace platform {

/// Ctrl with plus, minus and 0, or with the wheel, from 50 to 300 percent. Kept from page to page.
class PageZoom {
 public:
  explicit PageZoom(WebKitWebView* view);

  /// Returns true if the key was one of these.
  bool HandleKey(const GdkEventKey& key);

 private:
  bool HandleWheel(const GdkEventScroll& wheel);
  void ZoomTo(int step);

  WebKitWebView* mView;  // kept alive by the connection
  int mStep;
  SignalConnection mWheel;
  double mTurned = 0;
};

}  // namespace platform
