// Form, controls, timer, browser, dialogs and event loop of the fake platform.
//
// SPDX-License-Identifier: MIT
#include <algorithm>
#include <array>
#include <stdexcept>
#include <utility>

#include "core/attempt.h"
#include "platform/window/control.h"
#include "platform/window/dialogs.h"
#include "platform/window/event_loop.h"
#include "platform/window/form.h"
#include "platform/window/web_browser.h"
#include "tests/fake_platform/fake.h"
#include "tests/fake_platform/impl.h"

namespace {

/// The kinds that a property belongs to; the fake's extra kinds have them all.
bool Has(const fake::Control& control, const std::string& property) {
  if (control.lacks.contains(property)) return false;
  const auto is = [&](const char* kind) { return control.kind == kind; };
  if (property == "Caption") return !is("PictureBox") && !is("WebBrowser") && !is("Image");
  if (property == "Font") return !is("PictureBox") && !is("WebBrowser") && !is("Image");
  if (property == "RightToLeft") return !is("PictureBox") && !is("WebBrowser");
  if (property == "Items") return is("StatusBar") || is("Toolbar") || is("TabStrip");
  if (property == "Click") return is("CommandButton");
  return true;
}

void Require(const fake::Control& control, const std::string& property) {
  if (!control.alive) throw std::logic_error("the form of " + control.name + " has gone");
  if (!Has(control, property)) throw std::logic_error(control.kind + " has no " + property);
}

template <class Value>
void Set(fake::Control& control, const std::string& property, Value& member, const Value& value) {
  Require(control, property);
  ++control.timesSet[property];
  member = value;
}

void SetSize(fake::Control& control, const std::string& property, float& member, float twips) {
  Require(control, property);
  if (!(twips >= 0)) throw std::invalid_argument("a size below nothing");
  Set(control, property, member, twips);
}

template <class Value>
const Value& Get(const fake::Control& control, const std::string& property, const Value& member) {
  Require(control, property);
  return member;
}

}  // namespace

namespace platform {

std::string Control::Kind() const { return Get(*mImpl->control, "Kind", mImpl->control->kind); }
std::string Control::Name() const { return Get(*mImpl->control, "Name", mImpl->control->name); }
std::string Control::Tag() const { return Get(*mImpl->control, "Tag", mImpl->control->tag); }
std::string Control::Caption() const {
  return Get(*mImpl->control, "Caption", mImpl->control->caption);
}
void Control::SetCaption(const std::string& caption) {
  Set(*mImpl->control, "Caption", mImpl->control->caption, caption);
}
std::string Control::ToolTipText() const {
  return Get(*mImpl->control, "ToolTipText", mImpl->control->toolTipText);
}
void Control::SetToolTipText(const std::string& text) {
  Set(*mImpl->control, "ToolTipText", mImpl->control->toolTipText, text);
}
bool Control::Enabled() const { return Get(*mImpl->control, "Enabled", mImpl->control->enabled); }
void Control::SetEnabled(bool enabled) {
  Set(*mImpl->control, "Enabled", mImpl->control->enabled, enabled);
}
void Control::SetFont(const Font& font) {
  Set(*mImpl->control, "Font", mImpl->control->font, std::optional(font));
}
void Control::SetRightToLeft(bool rightToLeft) {
  Set(*mImpl->control, "RightToLeft", mImpl->control->rightToLeft, rightToLeft);
}
float Control::Left() const { return Get(*mImpl->control, "Left", mImpl->control->left); }
float Control::Top() const { return Get(*mImpl->control, "Top", mImpl->control->top); }
float Control::Width() const { return Get(*mImpl->control, "Width", mImpl->control->width); }
float Control::Height() const { return Get(*mImpl->control, "Height", mImpl->control->height); }
void Control::SetLeft(float twips) { Set(*mImpl->control, "Left", mImpl->control->left, twips); }
void Control::SetTop(float twips) { Set(*mImpl->control, "Top", mImpl->control->top, twips); }
void Control::SetWidth(float twips) {
  SetSize(*mImpl->control, "Width", mImpl->control->width, twips);
}
void Control::SetHeight(float twips) {
  SetSize(*mImpl->control, "Height", mImpl->control->height, twips);
}

void Control::BringToFront() {
  Require(*mImpl->control, "ZOrder");
  for (const auto& form : fake::TheWorld().loadedForms) {
    const auto at = std::ranges::find(form->zOrder, mImpl->control);
    if (at != form->zOrder.end()) std::rotate(at, std::next(at), form->zOrder.end());
  }
}

std::vector<ContainerItem> Control::Items() const {
  return Get(*mImpl->control, "Items", mImpl->control->items);
}

void Control::OnClick(std::function<void()> handler) {
  Require(*mImpl->control, "Click");
  mImpl->control->onClick = std::move(handler);
}

struct Form::Impl {
  std::shared_ptr<fake::Form> form = std::make_shared<fake::Form>();
};

Form::Form(std::string name, float clientWidth, float clientHeight)
    : mImpl(std::make_shared<Impl>()) {
  mImpl->form->name = std::move(name);
  mImpl->form->clientWidth = clientWidth;
  mImpl->form->clientHeight = clientHeight;
  fake::TheWorld().loadedForms.push_back(mImpl->form);
}

Form::~Form() {
  auto& form = *mImpl->form;
  for (const auto& control : form.controls) control->alive = false;
  form.onResize = form.onUnload = form.onUnloaded = nullptr;
  std::erase(fake::TheWorld().loadedForms, mImpl->form);
}

Control Form::AddControl(const std::string& kind, const std::string& name, float width,
                         float height) {
  constexpr std::array kKinds = {"PictureBox", "WebBrowser", "CommandButton", "Label"};
  if (std::ranges::find(kKinds, kind) == kKinds.end()) {
    throw std::invalid_argument("no control of kind " + kind);
  }
  auto control = mImpl->form->Add(kind, name);
  control->width = width;
  control->height = height;
  return Control(std::make_shared<Control::Impl>(control));
}

std::vector<Control> Form::Controls() const {
  std::vector<Control> controls;
  for (const auto& control : mImpl->form->controls) {
    controls.push_back(Control(std::make_shared<Control::Impl>(control)));
  }
  return controls;
}

std::string Form::Name() const { return mImpl->form->name; }
std::string Form::Caption() const { return mImpl->form->caption; }
void Form::SetCaption(const std::string& caption) { mImpl->form->caption = caption; }
void Form::SetFont(const Font& font) { mImpl->form->font = font; }
void Form::SetRightToLeft(bool rightToLeft) { mImpl->form->rightToLeft = rightToLeft; }
float Form::ClientWidth() const { return mImpl->form->clientWidth; }
float Form::ClientHeight() const { return mImpl->form->clientHeight; }
bool Form::IsMinimised() const { return mImpl->form->minimised; }

void Form::Show() {
  fake::TheWorld().journal.emplace_back("Show");
  fake::Tell(mImpl->form->onResize);
  mImpl->form->visible = true;
}

void Form::Hide() {
  fake::TheWorld().journal.emplace_back("Hide");
  mImpl->form->visible = false;
}

void Form::Unload() { mImpl->form->Close(); }

void Form::OnResize(std::function<void()> handler) { mImpl->form->onResize = std::move(handler); }
void Form::OnUnload(std::function<void()> handler) { mImpl->form->onUnload = std::move(handler); }
void Form::OnUnloaded(std::function<void()> handler) {
  mImpl->form->onUnloaded = std::move(handler);
}

float TwipsPerPixelX() { return fake::TheWorld().twipsPerPixelX; }
float TwipsPerPixelY() { return fake::TheWorld().twipsPerPixelY; }

struct Timer::Impl {
  std::shared_ptr<fake::ScheduledTimer> timer;
};

Timer::Timer(int milliseconds, std::function<void()> handler)
    : mImpl(std::make_unique<Impl>(std::make_shared<fake::ScheduledTimer>(
          fake::ScheduledTimer{milliseconds, milliseconds, false, std::move(handler)}))) {
  fake::Timers().push_back(mImpl->timer);
}

Timer::~Timer() = default;

bool Timer::Enabled() const { return mImpl->timer->enabled; }

void Timer::SetEnabled(bool enabled) {
  mImpl->timer->enabled = enabled;
  mImpl->timer->due = mImpl->timer->milliseconds;
}

struct WebBrowser::Impl {
  std::shared_ptr<fake::Control> control;
};

WebBrowser::WebBrowser(const Control& control)
    : mImpl(std::make_shared<Impl>(control.mImpl->control)) {
  if (mImpl->control->kind != "WebBrowser") throw std::logic_error("not a browser");
}

WebBrowser::~WebBrowser() { mImpl->control->browser.beforeNavigate = nullptr; }

void WebBrowser::Navigate(const std::string& path) {
  Require(*mImpl->control, "Navigate");
  fake::TheWorld().journal.push_back("Navigate " + path);
  mImpl->control->browser.ownPages.Navigate(path);
  mImpl->control->browser.Follow(path);
}

void WebBrowser::OnBeforeNavigate(std::function<bool(const std::string& address)> handler) {
  mImpl->control->browser.beforeNavigate = std::move(handler);
}

void WebBrowser::SetBusyText(const std::string& text) {
  Require(*mImpl->control, "SetBusyText");
  mImpl->control->browser.busyText = text;
}

void WebBrowser::ReadInputs(std::function<void(const PageInputs&)> answer) {
  ++mImpl->control->browser.timesRead;
  fake::TheWorld().events.push_back([owner = std::weak_ptr(mImpl), answer = std::move(answer)] {
    const auto browser = owner.lock();
    if (!browser) return;
    const fake::Control& control = *browser->control;
    answer(control.alive ? control.browser.inputs : std::nullopt);
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
  while (!world.loadedForms.empty()) {
    if (world.events.empty() && !fake::IsTimerEnabled())
      throw std::logic_error("a form is loaded and nothing will happen");
    fake::Pass(1);
  }
  fake::HandleEvents();  // the end of the last form is told before the loop ends
}

void ProcessPendingEvents() { fake::HandleEvents(); }

}  // namespace platform

namespace fake {

void Form::Close() {
  if (std::exchange(unloading, true)) return;
  Tell(onUnload);
  visible = false;
  TheWorld().journal.emplace_back("Gone");
  for (const auto& control : controls) control->alive = false;
  std::erase_if(TheWorld().loadedForms, [&](const auto& form) { return form.get() == this; });
  TheWorld().events.push_back([form = weak_from_this()] {
    if (const auto living = form.lock()) Tell(std::exchange(living->onUnloaded, nullptr));
  });
}

}  // namespace fake
