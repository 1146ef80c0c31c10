// Densities, by the newest functions that the system has.
//
// SPDX-License-Identifier: MIT
#include "platform/win32/window/dpi.h"

#include <cmath>

#include "platform/win32/system_library.h"

namespace platform {
namespace {

// The part of NONCLIENTMETRICSW that every version of Windows knows is all of it since Vista.
NONCLIENTMETRICSW Metrics() {
  NONCLIENTMETRICSW metrics = {};
  metrics.cbSize = sizeof metrics;
  return metrics;
}

}  // namespace

int SystemDpi() {
  const HDC screen = GetDC(nullptr);
  const int dpi = GetDeviceCaps(screen, LOGPIXELSX);
  ReleaseDC(nullptr, screen);
  return dpi > 0 ? dpi : USER_DEFAULT_SCREEN_DPI;
}

int MonitorDpi(HWND window) {
  using GetDpi = HRESULT WINAPI(HMONITOR, int, UINT*, UINT*);
  static const auto getDpi = OptionalSystemFunction<GetDpi>(L"shcore.dll", "GetDpiForMonitor");
  constexpr int kEffective = 0;
  UINT dpi = 0, vertical = 0;
  const HMONITOR monitor = MonitorFromWindow(window, MONITOR_DEFAULTTONEAREST);
  if (!getDpi || FAILED(getDpi(monitor, kEffective, &dpi, &vertical))) return SystemDpi();
  return static_cast<int>(dpi);
}

int DpiOf(HWND window) {
  using GetDpi = UINT WINAPI(HWND);
  static const auto getDpi = OptionalSystemFunction<GetDpi>(L"user32.dll", "GetDpiForWindow");
  const UINT dpi = getDpi ? getDpi(window) : 0;
  return dpi > 0 ? static_cast<int>(dpi) : MonitorDpi(window);
}

int PixelsOf(double twips, int dpi) {
  return static_cast<int>(std::lround(twips * dpi / kTwipsPerInch));
}

SIZE WindowSizeFor(HWND window, SIZE client, int dpi) {
  using Adjust = BOOL WINAPI(RECT*, DWORD, BOOL, DWORD, UINT);
  static const auto adjust =
      OptionalSystemFunction<Adjust>(L"user32.dll", "AdjustWindowRectExForDpi");
  RECT area = {0, 0, client.cx, client.cy};
  const auto style = static_cast<DWORD>(GetWindowLongPtrW(window, GWL_STYLE));
  const auto extended = static_cast<DWORD>(GetWindowLongPtrW(window, GWL_EXSTYLE));
  if (adjust) {
    adjust(&area, style, FALSE, extended, static_cast<UINT>(dpi));
  } else {
    AdjustWindowRectEx(&area, style, FALSE, extended);
  }
  return {area.right - area.left, area.bottom - area.top};
}

LOGFONTW SystemFont(int dpi) {
  using Ask = BOOL WINAPI(UINT, UINT, void*, UINT, UINT);
  static const auto ask = OptionalSystemFunction<Ask>(L"user32.dll", "SystemParametersInfoForDpi");
  NONCLIENTMETRICSW metrics = Metrics();
  if (ask && ask(SPI_GETNONCLIENTMETRICS, metrics.cbSize, &metrics, 0, static_cast<UINT>(dpi))) {
    return metrics.lfMessageFont;
  }
  metrics = Metrics();
  SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, metrics.cbSize, &metrics, 0);
  LOGFONTW font = metrics.lfMessageFont;
  font.lfHeight = MulDiv(font.lfHeight, dpi, SystemDpi());
  return font;
}

}  // namespace platform
