// Dots per inch: of the screen that a window is on, where Windows tells them apart (since 8.1),
// otherwise of all screens.
//
// SPDX-License-Identifier: MIT
#pragma once

#include <windows.h>

namespace platform {

constexpr int kTwipsPerInch = 1440;

/// Of all screens, as it was when the person logged on.
int SystemDpi();

int DpiOf(HWND window);

/// Of the screen that most of the window is on. What DpiOf returns before Windows 10 version 1607.
int MonitorDpi(HWND window);

/// Pixels of twips at this density, rounded to the nearest.
int PixelsOf(double twips, int dpi);

/// The whole window's size that gives its inside this size.
SIZE WindowSizeFor(HWND window, SIZE client, int dpi);

/// The font in which the system writes messages, at this density.
LOGFONTW SystemFont(int dpi);

}  // namespace platform
