// Names in the page, late-bound and by its document: every text goes in as a text, so that none can
// become markup.
//
// SPDX-License-Identifier: MIT
#include "platform/win32/window/page_description.h"

#include <set>

#include "core/attempt.h"
#include "platform/win32/automation.h"
#include "platform/win32/window/page_elements.h"

namespace platform {
namespace {

/// The control calls a box by the labels that are for its id, and one without a label by its title;
/// the latter in every document mode.
void NameByTitle(const ComPtr<IDispatch>& box, const ComPtr<IDispatch>& label) {
  PutMember(label, L"htmlFor", Variant(std::wstring_view()));
  Variant text;
  GetMember(label, L"innerText", {}, text);
  SetAttribute(box, L"title", text.As(VT_BSTR).bstrVal);
}

/// A label belongs to the first box with its id; the later ones are named here.
void NameBoxes(const ComPtr<IDispatch>& document) {
  const PageElements boxes(document, L"INPUT");
  const PageElements labels(document, L"LABEL");
  // Every row has one of each, unless a voice's name is markup: then nobody knows what belongs to
  // what.
  if (boxes.Length() != labels.Length()) return;
  std::set<std::string> ids{""};
  for (long i = 0; i < boxes.Length(); ++i) {
    const auto box = boxes.At(i);
    if (!ids.insert(IdOf(box)).second) NameByTitle(box, labels.At(i));
  }
}

void NameBusyElement(const ComPtr<IDispatch>& document, const std::string& text) {
  const Variant id{std::wstring_view(L"busy")};
  SetAttribute(MemberObject(document, L"getElementById", {&id}), L"aria-label", WideText(text));
}

}  // namespace

void DescribePage(const ComPtr<IDispatch>& document, const std::string& busyText) {
  core::Attempt([&] { NameBoxes(document); });
  core::Attempt([&] { NameBusyElement(document, busyText); });  // most pages have none
}

}  // namespace platform
