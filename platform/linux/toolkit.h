// Starting GTK, and the measures of the screen; for entry points and the windows of this folder.
//
// SPDX-License-Identifier: MIT
#pragma once

namespace platform {

/// A variable that WebKit reads. Set, it looks for no graphics card and starts no driver.
inline constexpr const char* kWithoutGraphicsCard = "WEBKIT_DISABLE_COMPOSITING_MODE";

/// Call once, before any window. False when there is no display to show one on.
bool StartToolkit();

/// Twips in one unit of GTK's coordinates, which stands for one screen pixel or, where the desktop
/// is scaled, for a square of them.
double TwipsPerUnit();

}  // namespace platform
