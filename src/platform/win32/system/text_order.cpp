// The order of names, by the rules that Windows has for no language in particular.
//
// SPDX-License-Identifier: MIT
#include "platform/system/text_order.h"

#include <windows.h>

#include <stdexcept>

#include "platform/win32/wide_text.h"

namespace platform {

std::string SortKey(const std::string& text) {
  // String sort: hyphen and apostrophe are characters like others, not nearly nothing.
  constexpr DWORD kRules =
      LCMAP_SORTKEY | NORM_IGNORECASE | NORM_IGNOREKANATYPE | NORM_IGNOREWIDTH | SORT_STRINGSORT;
  if (text.empty()) return "";
  const std::wstring wide = WideText(text);
  // The sizes of a sort key are bytes.
  const auto write = [&](char* key, int size) {
    const int written =
        LCMapStringEx(LOCALE_NAME_INVARIANT, kRules, wide.data(), static_cast<int>(wide.size()),
                      reinterpret_cast<wchar_t*>(key), size, nullptr, nullptr, 0);
    if (written == 0) throw std::runtime_error("the text has no place in an order");
    return written;
  };
  std::string key(static_cast<std::size_t>(write(nullptr, 0)), '\0');
  write(key.data(), static_cast<int>(key.size()));
  return key;
}

}  // namespace platform
