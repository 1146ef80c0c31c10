// Looks at the program's windows and uses them, from another process of the same prefix. Reads a
// command from each line of its input and answers lines, the last of which is a dot:
//
//   list                every form and message, and below each its controls; see Describe
//   press WINDOW        as a click on a button
//   close WINDOW        as the close button of a frame
//   click WINDOW X Y    the left mouse button, at a place inside
//   front               the window in front
//   focus               the window in it that has the keyboard
//   accessible WINDOW   what screen readers are told of it: state, name; see oleacc.h
//   told                the events that windows have told them so far: number, window
//   load LIBRARY        loads a library by its bare name; says 1 where one was found
//   guard               from now on in the way of the program, which trusts the system's only
//
// Windows are numbers. Texts are percent-encoded.
//
// SPDX-License-Identifier: MIT
#include <windows.h>

#include <iostream>
#include <mutex>
#include <sstream>
#include <string>
#include <vector>

#include "platform/win32/com.h"
#include "platform/win32/system_library.h"
#include "platform/win32/wide_text.h"
#include "platform/win32/window/form_window.h"
#include "platform/win32/window/window_name.h"
#include "tests/e2e/win32/encoded.h"

// Behind the header that they need.
#include <commctrl.h>
#include <oleacc.h>

namespace {

// The one in mingw-w64's library is another.
constexpr IID kIAccessible = {
    0x618736e0, 0x3c3d, 0x11cf, {0x81, 0x0c, 0x00, 0xaa, 0x00, 0x38, 0x9b, 0x71}};

// Longer than anything that the program does in one go.
constexpr UINT kPatience = 5000;

std::string Encoded(const std::wstring& text) { return ::Encoded(platform::Utf8Text(text)); }

HWND WindowOf(long long number) { return reinterpret_cast<HWND>(number); }

long long NumberOf(HWND window) { return reinterpret_cast<long long>(window); }

std::wstring ClassOf(HWND window) {
  wchar_t name[256] = L"";
  GetClassNameW(window, name, 256);
  return name;
}

std::wstring TextOf(HWND window) {
  std::wstring text(1024, L'\0');
  DWORD_PTR length = 0;
  SendMessageTimeoutW(window, WM_GETTEXT, text.size(), reinterpret_cast<LPARAM>(text.data()),
                      SMTO_ABORTIFHUNG, kPatience, &length);
  text.resize(length);
  return text;
}

std::wstring NameOf(HWND window) {
  const auto atom = reinterpret_cast<UINT_PTR>(GetPropW(window, platform::kWindowNameProperty));
  wchar_t name[256] = L"";
  if (atom) GlobalGetAtomNameW(static_cast<ATOM>(atom), name, 256);
  return name;
}

/// A line: depth, number, process, class, name, visible, enabled, extended style, the four edges on
/// the screen, text.
void Describe(HWND window, int depth) {
  RECT place = {};
  GetWindowRect(window, &place);
  DWORD process = 0;
  GetWindowThreadProcessId(window, &process);
  std::cout << depth << ' ' << NumberOf(window) << ' ' << process << ' ' << Encoded(ClassOf(window))
            << ' ' << Encoded(NameOf(window)) << ' ' << IsWindowVisible(window) << ' '
            << IsWindowEnabled(window) << ' ' << GetWindowLongPtrW(window, GWL_EXSTYLE) << ' '
            << place.left << ' ' << place.top << ' ' << place.right << ' ' << place.bottom << ' '
            << Encoded(TextOf(window)) << '\n';
}

BOOL CALLBACK DescribeChild(HWND window, LPARAM) {
  Describe(window, 1);
  return TRUE;
}

BOOL CALLBACK DescribeTop(HWND window, LPARAM) {
  const std::wstring name = ClassOf(window);
  // Message boxes have the class of all dialogs.
  if (name != platform::kFormClass && name != L"#32770") return TRUE;
  Describe(window, 0);
  EnumChildWindows(window, DescribeChild, 0);
  return TRUE;
}

void Click(HWND window, int x, int y) {
  PostMessageW(window, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(x, y));
  PostMessageW(window, WM_LBUTTONUP, 0, MAKELPARAM(x, y));
}

void DescribeAccessible(HWND window) {
  platform::EnterApartment();
  platform::ComPtr<IAccessible> accessible;
  // Looked up, not imported: this program also tries what is loaded of its folder, and when.
  const auto accessibleOf = platform::SystemFunction<decltype(AccessibleObjectFromWindow)>(
      L"oleacc.dll", "AccessibleObjectFromWindow");
  platform::Check(
      accessibleOf(window, static_cast<DWORD>(OBJID_CLIENT), kIAccessible, accessible.OutVoid()));
  const platform::Variant self(static_cast<long>(CHILDID_SELF));
  platform::Variant state;
  platform::Bstr name;
  platform::Check(accessible->get_accState(self, &state));
  accessible->get_accName(self, name.Out());  // a window without a text has none
  std::cout << state.As(VT_I4).lVal << ' ' << Encoded(platform::WideText(name.Utf8())) << '\n';
}

/// Told in a thread of its own, since events come through a message loop.
std::mutex heardMutex;
std::vector<std::pair<DWORD, HWND>> heard;

void CALLBACK Hear(HWINEVENTHOOK, DWORD event, HWND window, LONG, LONG, DWORD, DWORD) {
  const std::lock_guard lock(heardMutex);
  heard.emplace_back(event, window);
}

DWORD WINAPI Listen(void*) {
  SetWinEventHook(EVENT_MIN, EVENT_MAX, nullptr, Hear, 0, 0,
                  WINEVENT_OUTOFCONTEXT | WINEVENT_SKIPOWNPROCESS);
  MSG message;
  while (GetMessageW(&message, nullptr, 0, 0) > 0) DispatchMessageW(&message);
  return 0;
}

void SayWhatWasHeard() {
  const std::lock_guard lock(heardMutex);
  for (const auto& [event, window] : heard) std::cout << event << ' ' << NumberOf(window) << '\n';
}

HWND Focus() {
  GUITHREADINFO information = {};
  information.cbSize = sizeof information;
  GetGUIThreadInfo(GetWindowThreadProcessId(GetForegroundWindow(), nullptr), &information);
  return information.hwndFocus;
}

void Obey(const std::string& command, std::istringstream& rest) {
  long long number = 0;
  if (command == "list") {
    EnumWindows(DescribeTop, 0);
  } else if (command == "front") {
    std::cout << NumberOf(GetForegroundWindow()) << '\n';
  } else if (command == "focus") {
    std::cout << NumberOf(Focus()) << '\n';
  } else if (command == "told") {
    SayWhatWasHeard();
  } else if (command == "load") {
    std::string name;
    rest >> name;
    std::cout << (LoadLibraryW(platform::WideText(name).c_str()) != nullptr) << '\n';
  } else if (command == "guard") {
    platform::TrustSystemLibrariesOnly();
  } else if (rest >> number; command == "press") {
    PostMessageW(WindowOf(number), BM_CLICK, 0, 0);
  } else if (command == "accessible") {
    DescribeAccessible(WindowOf(number));
  } else if (command == "close") {
    PostMessageW(WindowOf(number), WM_CLOSE, 0, 0);
  } else if (command == "click") {
    int x = 0, y = 0;
    rest >> x >> y;
    Click(WindowOf(number), x, y);
  } else {
    std::cout << "unknown\n";
  }
}

}  // namespace

int main() {
  CreateThread(nullptr, 0, Listen, nullptr, 0, nullptr);
  std::string line;
  while (std::getline(std::cin, line)) {
    std::istringstream rest(line);
    std::string command;
    rest >> command;
    Obey(command, rest);
    std::cout << "." << std::endl;
  }
  return 0;
}
