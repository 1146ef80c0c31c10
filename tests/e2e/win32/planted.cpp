// A library that somebody has put where it does not belong: says that it was loaded, in a file
// "<itself>.loaded", and by whom.
//
// SPDX-License-Identifier: MIT
#include <windows.h>

#include <string>

BOOL WINAPI DllMain(HINSTANCE library, DWORD reason, void*) {
  if (reason != DLL_PROCESS_ATTACH) return TRUE;
  wchar_t itself[MAX_PATH] = L"";
  GetModuleFileNameW(library, itself, MAX_PATH);
  CloseHandle(CreateFileW((std::wstring(itself) + L".loaded").c_str(), GENERIC_WRITE, 0, nullptr,
                          CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr));
  return TRUE;
}
