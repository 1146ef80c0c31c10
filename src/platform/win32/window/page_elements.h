// A page's elements, late-bound.
//
// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

#include "platform/win32/com.h"

namespace platform {

/// The elements of one tag, in the order of the document.
class PageElements {
 public:
  PageElements(const ComPtr<IDispatch>& document, std::wstring_view tag);

  long Length() const { return mLength; }
  ComPtr<IDispatch> At(long index) const;

 private:
  ComPtr<IDispatch> mList;
  long mLength = 0;
};

void GetAttribute(const ComPtr<IDispatch>& element, std::wstring_view name, Variant& value);
void SetAttribute(const ComPtr<IDispatch>& element, std::wstring_view name,
                  std::wstring_view value);

/// Empty where it has none.
std::string IdOf(const ComPtr<IDispatch>& element);

}  // namespace platform
