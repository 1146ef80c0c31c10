// Names of windows for other programs: the tests, and tools that help people with the keyboard. A
// window's own text is no name, since it is translated. The name is kept as a property of the
// window: a global atom, which every process finds by the name. Atoms do not tell letter case
// apart.
//
// SPDX-License-Identifier: MIT
#pragma once

#include <windows.h>

#include <string>

namespace platform {

inline constexpr const wchar_t* kWindowNameProperty = L"VelorName";

void NameWindow(HWND window, const std::string& name);

/// Before the window goes: Windows does not count names down by itself.
void ForgetWindowName(HWND window);

}  // namespace platform
