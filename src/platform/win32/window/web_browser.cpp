// The browser's promises, on the control of browser_control.cpp: showing a file, the filter,
// reading the boxes.
//
// The page is read late-bound, by names. In which document mode it is shown: no registry value asks
// for a newer one for this program, so the control shows a page with a document type in the mode of
// version 7, its default for programs. There getAttribute answers the element's live state, as a
// Boolean. A page may ask for a later mode, as the wait page does for its pictures' sake; in those,
// getAttribute answers the text in the markup, and the property of the same name is the live state.
// So the attribute counts where it is a Boolean, and the property where it is not.
//
// SPDX-License-Identifier: MIT
#include "platform/window/web_browser.h"

#include <stdexcept>
#include <utility>

#include "core/attempt.h"
#include "platform/win32/automation.h"
#include "platform/win32/window/browser_control.h"
#include "platform/win32/window/page_elements.h"

namespace platform {
namespace {

/// False where the element has no such attribute.
bool LiveState(const ComPtr<IDispatch>& element, const wchar_t* name) {
  return core::AttemptOr(false, [&] {
    Variant value;
    GetAttribute(element, name, value);
    if (value.vt != VT_BOOL) {
      Variant property;
      GetMember(element, name, {}, property);
      return property.As(VT_BOOL).boolVal != VARIANT_FALSE;
    }
    return value.boolVal != VARIANT_FALSE;
  });
}

std::vector<InputState> InputsOf(const ComPtr<IDispatch>& document) {
  const PageElements elements(document, L"INPUT");
  std::vector<InputState> inputs;
  for (long i = 0; i < elements.Length(); ++i) {
    const auto element = elements.At(i);
    inputs.push_back(
        {IdOf(element), LiveState(element, L"checked"), LiveState(element, L"disabled")});
  }
  return inputs;
}

}  // namespace

struct WebBrowser::Impl {
  std::shared_ptr<BrowserControl> control;
};

WebBrowser::WebBrowser(const Control& control) : mImpl(std::make_shared<Impl>()) {
  mImpl->control = std::dynamic_pointer_cast<BrowserControl>(control.mImpl);
  if (!mImpl->control) throw std::logic_error("not a WebBrowser: " + control.Kind());
}

WebBrowser::~WebBrowser() { mImpl->control->SetBeforeNavigate(nullptr); }

void WebBrowser::Navigate(const std::string& path) { mImpl->control->Navigate(path); }

void WebBrowser::OnBeforeNavigate(std::function<bool(const std::string& address)> handler) {
  mImpl->control->SetBeforeNavigate(std::move(handler));
}

// The control is part of this process, and ends with it alone.
void WebBrowser::OnPageLost(std::function<void()>) {}

void WebBrowser::Reload() { mImpl->control->Reload(); }

void WebBrowser::SetBusyText(const std::string& text) { mImpl->control->SetBusyText(text); }

void WebBrowser::ReadInputs(std::function<void(const PageInputs&)> answer) {
  const PageInputs inputs = core::AttemptOr(
      PageInputs(), [&] { return PageInputs(InputsOf(mImpl->control->Document())); });
  answer(inputs);
}

// The page is asked in place and at once: that is cheaper than to be told of its events.
bool WebBrowser::InputsMayHaveChanged() const { return true; }

}  // namespace platform
