// Form, controls, timer, browser, dialogs and event loop of the fake platform.
//
// SPDX-License-Identifier: MIT
#include <algorithm>
#include <array>
#include <stdexcept>
#include <utility>

#include "platform/window/dialogs.h"
#include "platform/window/event_loop.h"
#include "platform/window/web_browser.h"
#include "tests/fake_platform/fake.h"

namespace platform {

std::shared_ptr<Form::Impl> MakeForm(const std::string& name, float clientWidth,
                                     float clientHeight) {
  const auto form = std::make_shared<fake::Form>(name, clientWidth, clientHeight);
  fake::TheWorld().loadedForms.push_back(form);
  return form;
}

float TwipsPerPixelX() { return fake::TheWorld().twipsPerPixelX; }
float TwipsPerPixelY() { return fake::TheWorld().twipsPerPixelY; }

struct WebBrowser::Impl {
  std::shared_ptr<fake::Control> control;
};

WebBrowser::WebBrowser(const Control& control)
    : mImpl(std::make_shared<Impl>(std::dynamic_pointer_cast<fake::Control>(control.mImpl))) {
  if (mImpl->control->kind != "WebBrowser") throw std::logic_error("not a browser");
}

WebBrowser::~WebBrowser() {
  mImpl->control->browser.beforeNavigate = nullptr;
  mImpl->control->browser.pageLost = nullptr;
}

void WebBrowser::Navigate(const std::string& path) {
  mImpl->control->CheckLives();
  fake::TheWorld().journal.push_back("Navigate " + path);
  mImpl->control->browser.ownPage = path;
  mImpl->control->browser.ownPages.Navigate(path);
  Reload();
}

void WebBrowser::OnBeforeNavigate(std::function<bool(const std::string& address)> handler) {
  mImpl->control->browser.beforeNavigate = std::move(handler);
}

void WebBrowser::OnPageLost(std::function<void()> handler) {
  mImpl->control->browser.pageLost = std::move(handler);
}

void WebBrowser::Reload() {
  mImpl->control->CheckLives();
  mImpl->control->browser.Follow(mImpl->control->browser.ownPage);
}

void WebBrowser::SetBusyText(const std::string& text) {
  mImpl->control->CheckLives();
  mImpl->control->browser.busyText = text;
}

void WebBrowser::ReadInputs(std::function<void(const PageInputs&)> answer) {
  ++mImpl->control->browser.timesRead;
  fake::TheWorld().events.push_back([owner = std::weak_ptr(mImpl), answer = std::move(answer)] {
    const auto browser = owner.lock();
    if (!browser) return;
    const fake::Control& control = *browser->control;
    answer(control.IsAlive() ? control.browser.inputs : std::nullopt);
  });
}

bool WebBrowser::InputsMayHaveChanged() const { return !mImpl->control->browser.tellsOfNoChange; }

void ShowMessage(const std::string& text, const std::string& title, bool rightToLeft) {
  auto& world = fake::TheWorld();
  world.journal.push_back("Message " + text);
  world.messages.push_back({text, title, rightToLeft});
  if (world.whileMessageIsShown) world.whileMessageIsShown();
}

void RunEventLoop() {
  auto& world = fake::TheWorld();
  while (LoadedForms() > 0) {
    if (world.events.empty() && !fake::IsTimerRunning())
      throw std::logic_error("a form is loaded and nothing will happen");
    fake::Pass(1);
  }
}

void ProcessPendingEvents() { fake::HandleEvents(); }

}  // namespace platform

namespace fake {

/// The fake's extra kinds have every property.
bool Control::Has(const std::string& property) const {
  if (lacks.contains(property)) return false;
  const auto is = [&](const char* one) { return kind == one; };
  if (property == "Caption") return !is("PictureBox") && !is("WebBrowser") && !is("Image");
  if (property == "Font") return !is("PictureBox") && !is("WebBrowser") && !is("Image");
  if (property == "RightToLeft") return !is("PictureBox") && !is("WebBrowser");
  if (property == "Items") return is("StatusBar") || is("Toolbar") || is("TabStrip");
  if (property == "Click") return is("CommandButton");
  return true;
}

template <class Value>
void Control::Set(const std::string& property, Value& member, const Value& value) {
  if (!Has(property)) Lacks(property);
  ++timesSet[property];
  member = value;
}

std::string Control::Tag() const {
  if (!Has("Tag")) Lacks("Tag");
  return tag;
}
std::string Control::Caption() const { return Has("Caption") ? caption : Impl::Caption(); }
void Control::SetCaption(const std::string& text) { Set("Caption", caption, text); }
void Control::SetFont(const platform::Font& newFont) { Set("Font", font, std::optional(newFont)); }
void Control::SetRightToLeft(bool newDirection) { Set("RightToLeft", rightToLeft, newDirection); }
std::string Control::ToolTipText() const { return toolTipText; }
void Control::SetToolTipText(const std::string& text) { Set("ToolTipText", toolTipText, text); }
void Control::SetEnabled(bool newState) { Set("Enabled", enabled, newState); }

void Control::OnClick(std::function<void()>&& handler) {
  if (!Has("Click")) return Impl::OnClick(std::move(handler));
  onClick = std::move(handler);
}

void Control::Speak(const std::string& text) { announced.push_back(text); }

std::vector<platform::ContainerItem> Control::Items() const {
  return Has("Items") ? items : Impl::Items();
}

void Control::BringToFront() {
  if (!Has("ZOrder")) Lacks("ZOrder");
  for (const auto& form : TheWorld().loadedForms) {
    const auto at =
        std::ranges::find(form->zOrder, this, [](const auto& control) { return control.get(); });
    if (at != form->zOrder.end()) std::rotate(at, std::next(at), form->zOrder.end());
  }
}

void Control::CheckLives() const {
  if (!mAlive) throw std::logic_error("the form of " + name + " has gone");
}

void Control::End() {
  Impl::End();
  mAlive = false;
}

std::shared_ptr<platform::Control::Impl> Form::MakeControl(const std::string& kind,
                                                           const std::string& controlName) {
  constexpr std::array kKinds = {"PictureBox", "WebBrowser", "CommandButton", "Label"};
  if (std::ranges::find(kKinds, kind) == kKinds.end()) {
    throw std::invalid_argument("no control of kind " + kind);
  }
  return zOrder.emplace_back(std::make_shared<Control>(kind, controlName));
}

std::shared_ptr<Control> Form::Add(const std::string& kind, const std::string& controlName) {
  const auto& control = zOrder.emplace_back(std::make_shared<Control>(kind, controlName));
  controls.push_back(control);
  return control;
}

std::vector<std::shared_ptr<Control>> Form::Controls() const {
  std::vector<std::shared_ptr<Control>> all;
  for (const auto& control : controls) all.push_back(std::static_pointer_cast<Control>(control));
  return all;
}

void Form::PlaceControl(platform::Control::Impl& control) {
  ++static_cast<Control&>(control).timesSet["Bounds"];
}

void Form::Present() {
  TheWorld().journal.emplace_back("Show");
  visible = true;
  for (const auto& control : controls) control->FormActivated(true);
}

void Form::Conceal() {
  TheWorld().journal.emplace_back("Hide");
  visible = false;
}

void Form::DestroyNativeWindow() {
  mHasWindow = visible = false;
  TheWorld().journal.emplace_back("Gone");
  DetachControls();
  std::erase_if(TheWorld().loadedForms, [&](const auto& form) { return form.get() == this; });
}

}  // namespace fake
