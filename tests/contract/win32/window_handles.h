// The system's own windows behind forms, controls and messages of this process.
//
// SPDX-License-Identifier: MIT
#pragma once

#include <windows.h>

#include <string>

namespace handles {

HWND WindowOf(const std::string& form);
HWND WindowOf(const std::string& form, const std::string& control);

/// The message that is shown; null when there is none.
HWND ShownMessage();

std::string TextOf(HWND window);

}  // namespace handles
