// The browser's promises, on the view of browser_control.cpp: showing a file, the filter, reading
// the boxes.
//
// SPDX-License-Identifier: MIT
#include "platform/window/web_browser.h"

#include <memory>
#include <stdexcept>
#include <string_view>
#include <utility>

#include "core/attempt.h"
#include "core/text.h"
#include "platform/linux/documents/native_path.h"
#include "platform/linux/signals.h"
#include "platform/linux/window/browser_control.h"

namespace platform {
namespace {

/// The properties, which are the live state: the attributes say how the page was written. Asked of
/// the prototype, since an element of the page that is named as a function of the document's stands
/// before that function. One text, since asking for each value of a long list would keep the window
/// from answering; between its parts a NUL, which no id can hold.
constexpr const char* kReadInputs = R"(
  Array.from(Document.prototype.getElementsByTagName.call(document, "INPUT"),
             input => (input.checked === true ? "1" : "0") +
                      (input.disabled === true ? "1" : "0") + input.id).join("\0")
)";

struct ReleaseBytes {
  void operator()(GBytes* bytes) const { g_bytes_unref(bytes); }
};

/// Each part is two flags and the id; a page without inputs gives an empty text.
std::vector<InputState> InputsFrom(std::string_view text) {
  std::vector<InputState> inputs;
  if (text.empty()) return inputs;
  for (const std::string& part : core::Split(text, std::string_view("\0", 1))) {
    inputs.push_back({part.substr(2), part.at(0) == '1', part.at(1) == '1'});
  }
  return inputs;
}

std::vector<InputState> InputsFrom(JSCValue* value) {
  if (!jsc_value_is_string(value)) throw std::runtime_error("the page gave no text");
  const std::unique_ptr<GBytes, ReleaseBytes> bytes(jsc_value_to_string_as_bytes(value));
  gsize size = 0;
  const auto* const data = static_cast<const char*>(g_bytes_get_data(bytes.get(), &size));
  return InputsFrom(std::string_view(data, size));
}

}  // namespace

struct WebBrowser::Impl {
  std::shared_ptr<BrowserControl> control;
};

namespace {

/// An answer on its way. It is given up when the browser object has gone.
struct Question {
  std::weak_ptr<void> browser;
  std::shared_ptr<BrowserControl> control;
  std::function<void(const PageInputs&)> answer;
};

void TellAnswer(GObject* view, GAsyncResult* result, gpointer data) {
  const std::unique_ptr<Question> question(static_cast<Question*>(data));
  PageInputs inputs;
  core::Attempt([&] {
    GErrorCheck error;
    JSCValue* const value =
        webkit_web_view_evaluate_javascript_finish(WEBKIT_WEB_VIEW(view), result, error.Out());
    error.Check();
    inputs = InputsFrom(GRef<JSCValue>::Adopt(value).Get());
  });
  // Held while it is told: the answer may destroy the browser object.
  const auto browser = question->browser.lock();
  if (!inputs) question->control->ForgetReading();
  if (browser) core::Attempt([&] { question->answer(inputs); });
}

}  // namespace

WebBrowser::WebBrowser(const Control& control) : mImpl(std::make_shared<Impl>()) {
  mImpl->control = std::dynamic_pointer_cast<BrowserControl>(control.mImpl);
  if (!mImpl->control) throw std::logic_error("not a WebBrowser: " + control.Kind());
}

WebBrowser::~WebBrowser() {
  mImpl->control->SetBeforeNavigate(nullptr);
  mImpl->control->SetPageLost(nullptr);
}

void WebBrowser::Navigate(const std::string& path) { mImpl->control->Navigate(NativePath(path)); }

void WebBrowser::OnBeforeNavigate(std::function<bool(const std::string& address)> handler) {
  mImpl->control->SetBeforeNavigate(std::move(handler));
}

void WebBrowser::OnPageLost(std::function<void()> handler) {
  mImpl->control->SetPageLost(std::move(handler));
}

void WebBrowser::Reload() { mImpl->control->Reload(); }

void WebBrowser::SetBusyText(const std::string& text) { mImpl->control->SetBusyText(text); }

void WebBrowser::ReadInputs(std::function<void(const PageInputs&)> answer) {
  if (!mImpl->control->HasView()) return answer(std::nullopt);
  mImpl->control->BeginReading();
  webkit_web_view_evaluate_javascript(mImpl->control->View(), kReadInputs, -1, kHostWorld, nullptr,
                                      nullptr, TellAnswer,
                                      new Question{mImpl, mImpl->control, std::move(answer)});
}

bool WebBrowser::InputsMayHaveChanged() const { return mImpl->control->MayHaveChanged(); }

}  // namespace platform
