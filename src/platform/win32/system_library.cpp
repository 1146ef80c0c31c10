// Looking up functions of the system's libraries.
//
// SPDX-License-Identifier: MIT
#include "platform/win32/system_library.h"

#include <windows.h>

#include <stdexcept>

namespace platform {
namespace {

// LOAD_LIBRARY_SEARCH_SYSTEM32, which the headers for Windows 7 do not name.
constexpr DWORD kSystemFolderOnly = 0x800;

std::wstring SystemFolder() {
  wchar_t folder[MAX_PATH];
  const UINT length = GetSystemDirectoryW(folder, MAX_PATH);
  if (length == 0 || length >= MAX_PATH) throw std::runtime_error("there is no system folder");
  return {folder, length};
}

}  // namespace

void TrustSystemLibrariesOnly() {
  using SetFolders = BOOL WINAPI(DWORD);
  const auto setFolders =
      OptionalSystemFunction<SetFolders>(L"kernel32.dll", "SetDefaultDllDirectories");
  if (setFolders) setFolders(kSystemFolderOnly);
  // The current folder, which the search just restricted leaves out on newer systems.
  SetDllDirectoryW(L"");
}

void* FindSystemFunction(const std::wstring& library, const char* name) {
  // The full path: a library planted beside the program is not even looked at. It stays loaded.
  const HMODULE module = LoadLibraryExW((SystemFolder() + L"\\" + library).c_str(), nullptr,
                                        LOAD_WITH_ALTERED_SEARCH_PATH);
  if (!module) return nullptr;
  return reinterpret_cast<void*>(GetProcAddress(module, name));
}

void* RequiredSystemFunction(const std::wstring& library, const char* name) {
  void* const function = FindSystemFunction(library, name);
  if (!function) throw std::runtime_error(std::string("the system has no ") + name);
  return function;
}

}  // namespace platform
