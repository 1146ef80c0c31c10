// Tool tips: one window of the common controls for all controls of a form.
//
// SPDX-License-Identifier: MIT
#pragma once

#include <windows.h>

#include <string>

namespace platform {

/// Goes with its form. Null where the system gives none: a form works without tool tips.
HWND MakeToolTips(HWND form);

void AddToolTip(HWND toolTips, HWND control);
void ChangeToolTip(HWND toolTips, HWND control, const std::string& text);

}  // namespace platform
