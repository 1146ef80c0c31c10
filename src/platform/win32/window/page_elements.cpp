// A page's elements, by names.
//
// SPDX-License-Identifier: MIT
#include "platform/win32/window/page_elements.h"

#include <mshtmdid.h>

#include "platform/win32/automation.h"

namespace platform {
namespace {

// By number: before version 9 of the engine's modes, an element called "length" or "item" takes the
// name's place in the collection.
constexpr DISPID kLength = DISPID_COLLECTION;
constexpr DISPID kItem = DISPID_VALUE;

}  // namespace

PageElements::PageElements(const ComPtr<IDispatch>& document, std::wstring_view tag) {
  const Variant tagArgument{tag};
  mList = MemberObject(document, L"getElementsByTagName", {&tagArgument});
  Variant length;
  GetMember(mList, kLength, {}, length);
  mLength = length.As(VT_I4).lVal;
}

ComPtr<IDispatch> PageElements::At(long index) const {
  const Variant indexArgument(index);
  Variant element;
  GetMember(mList, kItem, {&indexArgument}, element);
  return ObjectOf(element);
}

void GetAttribute(const ComPtr<IDispatch>& element, std::wstring_view name, Variant& value) {
  const Variant nameArgument{name};
  GetMember(element, L"getAttribute", {&nameArgument}, value);
}

void SetAttribute(const ComPtr<IDispatch>& element, std::wstring_view name,
                  std::wstring_view value) {
  const Variant nameArgument{name};
  const Variant valueArgument{value};
  Variant nothing;
  GetMember(element, L"setAttribute", {&nameArgument, &valueArgument}, nothing);
}

std::string IdOf(const ComPtr<IDispatch>& element) {
  Variant id;
  GetAttribute(element, L"id", id);
  return id.vt == VT_BSTR ? id.Utf8() : std::string();
}

}  // namespace platform
