// Names of windows, kept as global atoms.
//
// SPDX-License-Identifier: MIT
#include "platform/win32/window/window_name.h"

#include "platform/win32/wide_text.h"

namespace platform {

void NameWindow(HWND window, const std::string& name) {
  const ATOM atom = GlobalAddAtomW(WideText(name).c_str());
  if (atom == 0) return;  // it works without a name
  SetPropW(window, kWindowNameProperty, reinterpret_cast<HANDLE>(static_cast<UINT_PTR>(atom)));
}

void ForgetWindowName(HWND window) {
  const auto atom = reinterpret_cast<UINT_PTR>(RemovePropW(window, kWindowNameProperty));
  if (atom != 0) GlobalDeleteAtom(static_cast<ATOM>(atom));
}

}  // namespace platform
