// The order of names, by the rules that Windows has for no language in particular.
//
// SPDX-License-Identifier: MIT
#include "platform/text_order.h"

#include <windows.h>

#include <stdexcept>

#include "platform/win32/text.h"

namespace platform {

int CompareText(const std::string& left, const std::string& right) {
  // String sort: hyphen and apostrophe are characters like others, not nearly nothing.
  constexpr DWORD kRules =
      NORM_IGNORECASE | NORM_IGNOREKANATYPE | NORM_IGNOREWIDTH | SORT_STRINGSORT;
  const std::wstring wideLeft = WideText(left);
  const std::wstring wideRight = WideText(right);
  const int result = CompareStringEx(LOCALE_NAME_INVARIANT, kRules, wideLeft.data(),
                                     static_cast<int>(wideLeft.size()), wideRight.data(),
                                     static_cast<int>(wideRight.size()), nullptr, nullptr, 0);
  if (result == 0) throw std::runtime_error("the texts cannot be compared");
  return result - CSTR_EQUAL;
}

}  // namespace platform
