// The entry point on Linux: starts GTK, then the program, then the event loop. Nothing else, so
// that tests can leave it out and lose nothing.
//
// SPDX-License-Identifier: MIT
#include <cstdio>

#include "app/modMain.h"
#include "core/attempt.h"
#include "platform/linux/system/arguments.h"
#include "platform/linux/window/toolkit.h"
#include "platform/window/event_loop.h"

int main(int argc, char** argv) {
  const bool ended = core::Attempt([&] { platform::SetArguments(argc, argv); });
  if (!ended || !platform::StartToolkit()) {
    std::fputs("VelorVoiceSetup: there is no display to show a window on\n", stderr);
    return 1;
  }
  return core::Attempt([] {
    modMain::Main();
    platform::RunEventLoop();
  })
             ? 0
             : 1;
}
