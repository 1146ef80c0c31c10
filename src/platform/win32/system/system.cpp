// Small questions that Windows answers.
//
// SPDX-License-Identifier: MIT
#include "platform/system/system.h"

#include <windows.h>
#include <commctrl.h>

#include <stdexcept>

#include "platform/win32/system_library.h"
#include "platform/win32/wide_text.h"

namespace platform {

int OperatingSystemMajorVersion() {
  // Of all functions that answer this, the one that no manifest and no compatibility setting
  // changes.
  using GetVersion = LONG WINAPI(OSVERSIONINFOW*);
  const auto getVersion = SystemFunction<GetVersion>(L"ntdll.dll", "RtlGetVersion");
  OSVERSIONINFOW version = {};
  version.dwOSVersionInfoSize = sizeof version;
  if (getVersion(&version) != 0) throw std::runtime_error("the system does not say its version");
  return static_cast<int>(version.dwMajorVersion);
}

std::string CountryName() {
  wchar_t name[128] = L"";
  const int length = GetLocaleInfoW(LOCALE_USER_DEFAULT, LOCALE_SCOUNTRY, name, 128);
  return length > 0 ? Utf8Text(name) : std::string();
}

void InitCommonControls(std::uint32_t recordSize, std::uint32_t classes) {
  const INITCOMMONCONTROLSEX record = {recordSize, classes};
  InitCommonControlsEx(&record);
}

}  // namespace platform
