// Common controls in the system's own look.
//
// SPDX-License-Identifier: MIT
#pragma once

namespace modXPStyle {

/// Registers the common controls. True when the system could be asked at all; whether it agreed is
/// not looked at, since nothing would be done differently.
bool InitCommonControlsXP();

}  // namespace modXPStyle
