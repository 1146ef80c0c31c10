// The window behind posted steps and timers.
//
// SPDX-License-Identifier: MIT
#include "platform/shared/window/event_queue.h"

#include <windows.h>

#include <map>
#include <memory>
#include <stdexcept>

#include "core/attempt.h"

namespace platform {
namespace {

constexpr UINT kStep = WM_APP;
constexpr const wchar_t* kClass = L"VelorVoiceSetupEvents";

using Step = std::function<void()>;

std::map<unsigned, std::shared_ptr<const Step>>& Timers() {
  static std::map<unsigned, std::shared_ptr<const Step>> timers;
  return timers;
}

void RunTimer(unsigned timer) {
  const auto found = Timers().find(timer);
  if (found == Timers().end()) return;  // stopped while this was on its way
  // Held while it runs: it may stop its own timer.
  const auto step = found->second;
  core::Attempt(*step);
}

LRESULT CALLBACK Handle(HWND window, UINT message, WPARAM first, LPARAM second) {
  if (message == kStep) {
    const std::unique_ptr<const Step> step(reinterpret_cast<const Step*>(second));
    core::Attempt(*step);
    return 0;
  }
  if (message == WM_TIMER) {
    core::Attempt([&] { RunTimer(static_cast<unsigned>(first)); });
    return 0;
  }
  return DefWindowProcW(window, message, first, second);
}

HWND MakeWindow() {
  WNDCLASSW description = {};
  description.lpfnWndProc = Handle;
  description.hInstance = GetModuleHandleW(nullptr);
  description.lpszClassName = kClass;
  RegisterClassW(&description);
  const HWND window = CreateWindowExW(0, kClass, nullptr, 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr,
                                      description.hInstance, nullptr);
  if (!window) throw std::runtime_error("the event window cannot be made");
  return window;
}

HWND EventWindow() {
  static const HWND window = MakeWindow();
  return window;
}

}  // namespace

void Post(std::function<void()> step) {
  auto posted = std::make_unique<const Step>(std::move(step));
  if (!PostMessageW(EventWindow(), kStep, 0, reinterpret_cast<LPARAM>(posted.get()))) {
    throw std::runtime_error("too many events are waiting");
  }
  static_cast<void>(posted.release());  // the window has it now
}

unsigned StartTimer(unsigned milliseconds, std::function<void()> step) {
  static unsigned last = 0;
  const unsigned timer = ++last;
  Timers()[timer] = std::make_shared<const Step>(std::move(step));
  if (!SetTimer(EventWindow(), timer, milliseconds, nullptr)) {
    Timers().erase(timer);
    throw std::runtime_error("the system has no more timers");
  }
  return timer;
}

void StopTimer(unsigned timer) {
  KillTimer(EventWindow(), timer);
  Timers().erase(timer);
}

}  // namespace platform
