// The event loop: Windows' messages, with the keys that belong to forms taken out first.
//
// SPDX-License-Identifier: MIT
#include "platform/window/event_loop.h"

#include <windows.h>

#include "platform/shared/window/form_impl.h"
#include "platform/win32/window/form_window.h"

namespace platform {
namespace {

/// Enough for every event that can be waiting, and an end where new ones come each time.
constexpr int kMostEventsAtOnce = 1000;

/// The buttons for back and forward, and Shift with the wheel. Nothing in a form uses them, and a
/// page would be left by them.
bool IsNavigationByMouse(const MSG& message) {
  switch (message.message) {
    case WM_XBUTTONDOWN:
    case WM_XBUTTONUP:
    case WM_XBUTTONDBLCLK:
      return true;
    case WM_MOUSEWHEEL:
      return (GET_KEYSTATE_WPARAM(message.wParam) & MK_SHIFT) != 0;
    default:
      return false;
  }
}

void Handle(MSG& message) {
  if (IsNavigationByMouse(message)) return;
  if (message.message >= WM_KEYFIRST && message.message <= WM_KEYLAST && TakeFormKey(message)) {
    return;
  }
  TranslateMessage(&message);
  DispatchMessageW(&message);
}

}  // namespace

void RunEventLoop() {
  MSG message;
  // Ends early where something in the process asked for its end (0), or the system is failing (-1).
  while (LoadedForms() > 0 && GetMessageW(&message, nullptr, 0, 0) > 0) Handle(message);
}

void ProcessPendingEvents() {
  MSG message;
  for (int i = 0; i < kMostEventsAtOnce && PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE); ++i) {
    // Not for this loop: it has to end the one of RunEventLoop.
    if (message.message == WM_QUIT) return PostQuitMessage(static_cast<int>(message.wParam));
    Handle(message);
  }
}

}  // namespace platform
