// Shell folders, and starting programs.
//
// SPDX-License-Identifier: MIT
#include "platform/system/shell.h"

#include <windows.h>
#include <shellapi.h>
#include <shlobj.h>

#include <memory>
#include <stdexcept>
#include <system_error>

#include "platform/errors.h"
#include "platform/win32/com.h"
#include "platform/win32/handle.h"
#include "platform/win32/wide_text.h"

namespace platform {
namespace {

struct FreeTaskMemory {
  void operator()(void* memory) const { CoTaskMemFree(memory); }
};
using ItemList = std::unique_ptr<ITEMIDLIST, FreeTaskMemory>;

ItemList ItemListOf(int csidl) {
  PIDLIST_ABSOLUTE list = nullptr;
  Check(SHGetSpecialFolderLocation(nullptr, csidl, &list));
  return ItemList(list);
}

[[noreturn]] void ThrowLastError(const std::string& what) {
  const auto code = static_cast<int>(GetLastError());
  throw std::system_error(code, std::system_category(), what);
}

bool IsFullPath(const std::wstring& path) {
  const bool onDrive = path.size() > 2 && path.at(1) == L':' && path.at(2) == L'\\';
  return onDrive || path.starts_with(L"\\\\");
}

}  // namespace

std::string SpecialFolder(int csidl) {
  EnterApartment();
  wchar_t path[MAX_PATH] = L"";
  if (!SHGetPathFromIDListW(ItemListOf(csidl).get(), path) || path[0] == L'\0') {
    throw std::runtime_error("the shell folder is none of the file system");
  }
  return Utf8Text(path);
}

void RunCommandLine(const std::string& commandLine) {
  std::wstring line = WideText(commandLine);
  // CreateProcess would read no program before a leading blank.
  line.erase(0, line.find_first_not_of(L" \t"));
  STARTUPINFOW start = {};
  start.cb = sizeof start;
  start.dwFlags = STARTF_USESHOWWINDOW;
  start.wShowWindow = SW_SHOWNORMAL;
  PROCESS_INFORMATION process = {};
  // No handle is inherited. A program path with blanks in quotes is taken as it is; without quotes
  // the system tries every blank as its end, as for every command line that people write.
  if (line.empty() || !CreateProcessW(nullptr, line.data(), nullptr, nullptr, FALSE, 0, nullptr,
                                      nullptr, &start, &process)) {
    ThrowLastError("the command line cannot be started");
  }
  const FileHandle processHandle(process.hProcess), threadHandle(process.hThread);
  // The foreground is this program's to give.
  AllowSetForegroundWindow(process.dwProcessId);
}

void RunElevated(const std::string& file, const std::string& workingFolder) {
  const std::wstring program = WideText(file);
  const std::wstring folder = WideText(workingFolder);
  if (!IsFullPath(program)) throw Unsupported(file + " is not a full path");
  EnterApartment();
  SHELLEXECUTEINFOW execute = {};
  execute.cbSize = sizeof execute;
  // No window of the shell's about a failure; and done before the call returns, since the program
  // may end right after it.
  execute.fMask = SEE_MASK_FLAG_NO_UI | SEE_MASK_NOASYNC;
  execute.lpVerb = L"runas";
  execute.lpFile = program.c_str();
  execute.lpDirectory = folder.c_str();
  execute.nShow = SW_SHOWNORMAL;
  if (!ShellExecuteExW(&execute)) ThrowLastError(file + " was not started");
}

}  // namespace platform
