// Profile strings, by the system's own reader. The "W" function is asked, so that a file is found
// in whatever folder it lies; what it answers is cut as the "A" function would cut it.
//
// SPDX-License-Identifier: MIT
#include "platform/system/profile.h"

#include <windows.h>

#include "platform/win32/documents/file_access.h"
#include "platform/win32/wide_text.h"

namespace platform {
namespace {

// Longer than any caller's buffer: bytes are counted afterwards.
constexpr DWORD kLongestValue = 4096;

}  // namespace

std::string ReadProfileString(const std::string& file, const std::string& section,
                              const std::string& key, const std::string& fallback,
                              std::size_t size) {
  if (size == 0) return "";
  std::wstring value(kLongestValue, L'\0');
  const DWORD length = GetPrivateProfileStringW(WideText(section).c_str(), WideText(key).c_str(),
                                                WideText(fallback).c_str(), value.data(),
                                                kLongestValue, SystemPath(file).c_str());
  value.resize(length);
  return Utf8Text(WideTextOfAnsi(AnsiText(value).substr(0, size - 1)));
}

}  // namespace platform
