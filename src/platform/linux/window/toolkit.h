// Starting GTK, and the measures of the screen; for entry points and the windows of this folder.
//
// SPDX-License-Identifier: MIT
#pragma once

#include <array>

namespace platform {

struct EngineVariable {
  const char* name;
  const char* value;
};

/// What this program tells its browser engine, which reads it where it starts: to look for no
/// graphics card, and to compile no script, since a page's own are switched off and the host's are
/// few lines.
inline constexpr std::array kEngineVariables = {
    EngineVariable{"WEBKIT_DISABLE_COMPOSITING_MODE", "1"}, EngineVariable{"JSC_useJIT", "0"}};

/// Call once, before any window. False when there is no display to show one on.
bool StartToolkit();

/// Twips in one unit of GTK's coordinates, which stands for one screen pixel or, where the desktop
/// is scaled, for a square of them.
double TwipsPerUnit();

}  // namespace platform
