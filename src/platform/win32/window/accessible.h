// What assistive technology is told of a window beyond what Windows finds out by itself.
//
// SPDX-License-Identifier: MIT
#pragma once

#include <windows.h>

namespace platform {

/// A picture, where Windows would call it a text.
void DescribeAsPicture(HWND window);

/// A text that is read out when it changes, without having the focus.
void DescribeAsStatus(HWND window);

/// The window's text, which is its name, or what it reports, has changed.
void TellChangedStatus(HWND window);

}  // namespace platform
