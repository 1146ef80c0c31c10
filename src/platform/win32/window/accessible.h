// What assistive technology is told of a window beyond what Windows finds out by itself.
//
// SPDX-License-Identifier: MIT
#pragma once

#include <windows.h>

#include <string>

namespace platform {

/// A picture, where Windows would call it a text.
void DescribeAsPicture(HWND window);

/// A text that is read out when it is announced, without having the focus.
void DescribeAsStatus(HWND window);

/// Makes `text` the name of the window, which its own text is otherwise.
void SetAccessibleName(HWND window, const std::string& text);

/// Has the text read out. It becomes the window's name, since a screen reader reads the name.
void AnnounceStatus(HWND window, const std::string& text);

}  // namespace platform
