// The reference for starting on Windows: the least that shows a window.
//
// SPDX-License-Identifier: MIT
#include <windows.h>

namespace {

LRESULT CALLBACK Handle(HWND window, UINT message, WPARAM wide, LPARAM parameter) {
  if (message == WM_DESTROY) PostQuitMessage(0);
  return DefWindowProcA(window, message, wide, parameter);
}

}  // namespace

int WINAPI WinMain(HINSTANCE instance, HINSTANCE, LPSTR, int show) {
  WNDCLASSA kind{};
  kind.lpfnWndProc = Handle;
  kind.hInstance = instance;
  kind.lpszClassName = "bare";
  kind.hbrBackground = reinterpret_cast<HBRUSH>(COLOR_WINDOW + 1);
  RegisterClassA(&kind);
  HWND window = CreateWindowExA(0, "bare", "bare", WS_OVERLAPPEDWINDOW, CW_USEDEFAULT,
                                CW_USEDEFAULT, 700, 620, nullptr, nullptr, instance, nullptr);
  ShowWindow(window, show);
  MSG message;
  while (GetMessageA(&message, nullptr, 0, 0) > 0) {
    TranslateMessage(&message);
    DispatchMessageA(&message);
  }
  return 0;
}
