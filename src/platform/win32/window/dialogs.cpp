// The message box, the system's own.
//
// SPDX-License-Identifier: MIT
#include "platform/window/dialogs.h"

#include <windows.h>

#include <stdexcept>

#include "platform/win32/wide_text.h"
#include "platform/win32/window/form_window.h"

namespace platform {

void ShowMessage(const std::string& text, const std::string& title, bool rightToLeft) {
  // Where no window of the program can be seen, the message comes to the front by itself.
  const HWND owner = VisibleFormWindow();
  const UINT style = MB_OK | MB_ICONEXCLAMATION | (owner ? 0 : MB_SETFOREGROUND) |
                     (rightToLeft ? MB_RTLREADING | MB_RIGHT : 0);
  if (MessageBoxW(owner, WideText(text).c_str(), WideText(title).c_str(), style) == 0) {
    throw std::runtime_error("the message cannot be shown");
  }
}

}  // namespace platform
