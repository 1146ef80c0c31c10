// What the other files of this folder may know of the forms there are.
//
// SPDX-License-Identifier: MIT
#pragma once

#include <windows.h>

namespace platform {

/// The class of every form's window, by which another instance's window is told from any other
/// window of the same title.
inline constexpr const wchar_t* kFormClass = L"VelorVoiceSetupForm";

/// The window of a form that can be seen; null when there is none.
HWND VisibleFormWindow();

/// Keys that belong to a form rather than to the control with the focus: Tab, Enter on a button,
/// mnemonics. True when the message needs no further handling.
bool TakeFormKey(MSG& message);

}  // namespace platform
