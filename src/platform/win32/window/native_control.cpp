// What all kinds of control share on Windows. What a kind has of its own is in control_kinds.cpp
// and browser_control.cpp.
//
// SPDX-License-Identifier: MIT
#include "platform/win32/window/native_control.h"

#include <stdexcept>

#include "platform/win32/window/tool_tips.h"
#include "platform/win32/window/window_name.h"

namespace platform {

void ApplyStyle(HWND window) {
  SetWindowPos(window, nullptr, 0, 0, 0, 0,
               SWP_FRAMECHANGED | SWP_NOMOVE | SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
}

void NativeControl::SetToolTipText(const std::string& text) {
  if (mToolTips) ChangeToolTip(mToolTips, Window(), text);
  mToolTipText = text;
}

bool NativeControl::Enabled() const { return IsWindowEnabled(Window()) != 0; }

void NativeControl::SetEnabled(bool enabled) {
  const bool hadFocus = GetFocus() == Window();
  EnableWindow(Window(), enabled);
  // A disabled window keeps the focus and hears no key: the form gives it to the next control.
  if (hadFocus && !enabled) SetFocus(GetParent(Window()));
}

void NativeControl::BringToFront() {
  SetWindowPos(Window(), HWND_TOP, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
}

void NativeControl::End() {
  Impl::End();
  if (mWindow) ForgetWindowName(mWindow);
  mWindow = nullptr;
}

void NativeControl::TakeFocus(FocusFrom) { SetFocus(Window()); }

bool NativeControl::TakesFocus() const {
  const auto style = static_cast<DWORD>(GetWindowLongPtrW(Window(), GWL_STYLE));
  return (style & WS_TABSTOP) != 0 && IsWindowEnabled(Window());
}

bool NativeControl::HasFocus() const {
  const HWND focus = GetFocus();
  return focus && (focus == mWindow || IsChild(mWindow, focus));
}

HWND NativeControl::Window() const {
  if (!mWindow) throw std::logic_error("a control was used after its form had gone");
  return mWindow;
}

void NativeControl::SetWindow(HWND window) {
  if (!window) throw std::runtime_error("the system has no room for a " + kind);
  mWindow = window;
  NameWindow(window, name);
}

void NativeControl::JoinToolTips(HWND toolTips) {
  mToolTips = toolTips;
  AddToolTip(mToolTips, Window());
}

}  // namespace platform
