// Where the window's controls stand: logo column at the left, browser beside it, below them the
// status line and, in the corner, the Install button.
//
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/window/control.h"

/// The controls that the layout places.
struct WindowControls {
  platform::Control picLogo;
  platform::Control webOptions;
  platform::Control cmdInstall;
  platform::Control lblStatus;
};

/// Places the controls in a client area of this size, in twips. `pixelX` and `pixelY` are one
/// screen pixel in twips. Sizes of button and label and the logo's width stay as designed. A place
/// or size that the system rejects, in a very small window, is skipped.
void PlaceControls(WindowControls& controls, float clientWidth, float clientHeight, float pixelX,
                   float pixelY);
