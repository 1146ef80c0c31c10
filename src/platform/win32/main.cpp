// The entry point on Windows: the program, then the event loop. Nothing else, so that tests can
// leave it out and lose nothing.
//
// SPDX-License-Identifier: MIT
#include <windows.h>

#include "app/modMain.h"
#include "core/attempt.h"
#include "platform/win32/com.h"
#include "platform/win32/system_library.h"
#include "platform/window/event_loop.h"

int WINAPI wWinMain(HINSTANCE, HINSTANCE, wchar_t*, int) {
  // Before anything can load a library.
  core::Attempt([] { platform::TrustSystemLibrariesOnly(); });
  return core::Attempt([] {
    platform::EnterApartment();
    modMain::Main();
    platform::RunEventLoop();
  })
             ? 0
             : 1;
}
