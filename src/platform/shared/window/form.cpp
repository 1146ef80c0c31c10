// The form: handlers, and the order of events from Show to the end.
//
// SPDX-License-Identifier: MIT
#include "platform/window/form.h"

#include <stdexcept>
#include <utility>

#include "platform/shared/window/event_queue.h"
#include "platform/shared/window/form_impl.h"

namespace platform {
namespace {

int loadedForms = 0;

/// What most calls begin with.
Form::Impl& Open(const std::shared_ptr<Form::Impl>& form) {
  form->RequireWindow();
  return *form;
}

}  // namespace

int LoadedForms() { return loadedForms; }

void Form::Impl::RequireWindow() const {
  if (!HasWindow()) throw std::logic_error("a form was used after its window was destroyed");
}

void Form::Impl::Load() {
  mLoaded = true;
  ++loadedForms;
}

void Form::Impl::EndLoaded() {
  if (!std::exchange(mLoaded, false)) return;
  --loadedForms;
  // The event loop looks at the number after each event.
  core::Attempt([] { Post([] {}); });
}

Control Form::Impl::AddControl(const std::string& kind, const std::string& controlName, float width,
                               float height) {
  const auto control = MakeControl(kind, controlName);
  controls.push_back(control);
  control->SetMover([this, raw = control.get()] { PlaceControl(*raw); });
  control->Move({0, 0, width, height});
  return Control(control);
}

void Form::Impl::DetachControls() {
  for (const auto& control : controls) control->End();
}

void Form::Impl::Show() {
  const auto kept = shared_from_this();
  Notify(onResize);
  if (HasWindow()) Present();
}

void Form::Impl::Unload() {
  if (std::exchange(mUnloading, true)) return;
  const auto kept = shared_from_this();
  Notify(onUnload);
  Close();
  PostTo(weak_from_this(), [](Impl& form) {
    form.EndLoaded();
    Notify(std::exchange(form.onUnloaded, nullptr));
  });
}

void Form::Impl::Close() {
  onResize = nullptr;
  onUnload = nullptr;
  if (HasWindow()) DestroyNativeWindow();
}

void Form::Impl::Release() {
  mUnloading = true;
  onUnloaded = nullptr;
  Close();
  EndLoaded();
}

Form::Form(std::string name, float clientWidth, float clientHeight)
    : mImpl(MakeForm(name, clientWidth, clientHeight)) {
  mImpl->Load();
}

Form::~Form() { mImpl->Release(); }

Control Form::AddControl(const std::string& kind, const std::string& name, float width,
                         float height) {
  return Open(mImpl).AddControl(kind, name, width, height);
}

std::vector<Control> Form::Controls() const {
  const auto& controls = Open(mImpl).controls;
  return {controls.begin(), controls.end()};
}

std::string Form::Name() const { return mImpl->name; }

std::string Form::Caption() const { return mImpl->caption; }

void Form::SetCaption(const std::string& caption) {
  Open(mImpl).SetTitle(caption);
  mImpl->caption = caption;
}

void Form::SetFont(const Font& font) { Open(mImpl).SetFont(font); }

void Form::SetRightToLeft(bool rightToLeft) { Open(mImpl).Mirror(rightToLeft); }

float Form::ClientWidth() const { return mImpl->ClientWidth(); }

float Form::ClientHeight() const { return mImpl->ClientHeight(); }

bool Form::IsMinimised() const { return Open(mImpl).IsMinimised(); }

void Form::Show() { Open(mImpl).Show(); }

void Form::Hide() { Open(mImpl).Conceal(); }

void Form::Unload() { mImpl->Unload(); }

void Form::OnResize(std::function<void()> handler) { mImpl->onResize = std::move(handler); }

void Form::OnUnload(std::function<void()> handler) { mImpl->onUnload = std::move(handler); }

void Form::OnUnloaded(std::function<void()> handler) { mImpl->onUnloaded = std::move(handler); }

}  // namespace platform
