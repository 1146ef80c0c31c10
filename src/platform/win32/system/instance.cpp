// One running instance in a session, and bringing it to the foreground. The mark is an object of
// the kernel, which goes with the process however that ends, and which only one process can make.
//
// SPDX-License-Identifier: MIT
#include <windows.h>

#include <functional>
#include <optional>
#include <stdexcept>
#include <string_view>

#include "platform/errors.h"
#include "platform/system/program.h"
#include "platform/win32/handle.h"
#include "platform/win32/system/program_file.h"
#include "platform/win32/wide_text.h"
#include "platform/win32/window/form_window.h"

namespace platform {
namespace {

/// One file has many spellings (links, short names, letter case); the system knows one of them.
std::wstring FinalPath(const std::wstring& path) {
  constexpr DWORD kLongest = 32768;
  const FileHandle file(CreateFileW(path.c_str(), 0,
                                    FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                    OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
  if (!file) return path;
  std::wstring final(kLongest, L'\0');
  const DWORD length = GetFinalPathNameByHandleW(file.Get(), final.data(), kLongest, 0);
  if (length == 0 || length >= kLongest) return path;
  final.resize(length);
  return final;
}

/// "Local" names are the session's own. A path is too long for a name, so its hash stands for it.
std::wstring MarkName() {
  std::wstring path = FinalPath(ProgramFile());
  CharUpperBuffW(path.data(), static_cast<DWORD>(path.size()));
  return L"Local\\VelorVoiceSetup-" + std::to_wstring(std::hash<std::wstring>()(path));
}

bool IsMarkedByAnother() {
  SetLastError(ERROR_SUCCESS);
  // Kept for good: the mark lasts as long as the process.
  const HANDLE mark = CreateMutexW(nullptr, FALSE, MarkName().c_str());
  const DWORD code = GetLastError();
  // An instance with elevated rights has a mark that cannot be opened, but it is there.
  if (!mark) return code == ERROR_ACCESS_DENIED;
  return code == ERROR_ALREADY_EXISTS;
}

std::wstring TextOf(HWND window, int(WINAPI* read)(HWND, wchar_t*, int)) {
  std::wstring text(1024, L'\0');
  text.resize(static_cast<std::size_t>(read(window, text.data(), static_cast<int>(text.size()))));
  return text;
}

/// FindWindowW compares without regard to letter case, and would take a folder's window of the same
/// title: the program's own folder has it.
struct Search {
  std::wstring title;
  HWND ours = nullptr;
  HWND other = nullptr;
};

BOOL CALLBACK Compare(HWND window, LPARAM data) {
  auto& search = *reinterpret_cast<Search*>(data);
  if (!IsWindowVisible(window) || TextOf(window, GetWindowTextW) != search.title) return TRUE;
  const bool isForm = TextOf(window, GetClassNameW) == kFormClass;
  HWND& found = isForm ? search.ours : search.other;
  if (!found) found = window;
  return TRUE;
}

}  // namespace

bool IsPreviousInstanceRunning() {
  // Asked again, the running instance is still this one.
  static const bool marked = IsMarkedByAnother();
  return marked;
}

void ActivateWindow(const std::string& title) {
  if (title.empty()) throw Unsupported("many windows have no title");
  Search search{WideText(title)};
  EnumWindows(Compare, reinterpret_cast<LPARAM>(&search));
  const HWND window = search.ours ? search.ours : search.other;
  if (!window) throw std::runtime_error("no window has this title");
  // Asked for, not waited for: a window that hangs must not hang this process.
  if (IsIconic(window)) ShowWindowAsync(window, SW_RESTORE);
  // A message that the window shows is in front of it.
  SetForegroundWindow(GetLastActivePopup(window));
}

}  // namespace platform
