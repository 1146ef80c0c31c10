// Stands for any program that ours starts: writes down its working folder and its command line, a
// line each time, into "<itself>.called". Shows nothing and ends.
//
// SPDX-License-Identifier: MIT
#include <windows.h>

#include <string>

#include "platform/win32/wide_text.h"

int WINAPI wWinMain(HINSTANCE, HINSTANCE, wchar_t*, int) {
  wchar_t folder[MAX_PATH] = L"", program[MAX_PATH] = L"";
  GetCurrentDirectoryW(MAX_PATH, folder);
  GetModuleFileNameW(nullptr, program, MAX_PATH);
  const std::string line =
      platform::Utf8Text(folder) + "\t" + platform::Utf8Text(GetCommandLineW()) + "\n";
  const std::wstring record = std::wstring(program) + L".called";
  const HANDLE file = CreateFileW(record.c_str(), FILE_APPEND_DATA, FILE_SHARE_READ, nullptr,
                                  OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
  // One write: whoever reads meanwhile finds whole lines or nothing.
  DWORD written = 0;
  WriteFile(file, line.data(), static_cast<DWORD>(line.size()), &written, nullptr);
  CloseHandle(file);
  return 0;
}
