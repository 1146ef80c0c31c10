// The handle on a control: what all kinds share. What a kind has of its own is in control_kinds.cpp
// and browser_control.cpp.
//
// SPDX-License-Identifier: MIT
#include "platform/control.h"

#include <stdexcept>
#include <utility>

#include "platform/win32/control_impl.h"
#include "platform/win32/tool_tips.h"
#include "platform/win32/window_name.h"

namespace platform {
namespace {

[[noreturn]] void Lacks(const Control::Impl& control, const std::string& property) {
  throw std::logic_error("a " + control.kind + " has no " + property);
}

float CheckedSize(float twips) {
  // The comparison is written so that a number that is none is refused too.
  if (!(twips >= 0)) throw std::invalid_argument("a size cannot be negative");
  return twips;
}

}  // namespace

Control::Impl::Impl(std::string kind, std::string name)
    : kind(std::move(kind)), name(std::move(name)) {}

HWND Control::Impl::Window() const {
  if (!mWindow) throw std::logic_error("a control was used after its form had gone");
  return mWindow;
}

void Control::Impl::SetWindow(HWND window) {
  if (!window) throw std::runtime_error("the system has no room for a " + kind);
  mWindow = window;
  NameWindow(window, name);
}

std::string Control::Impl::Caption() const { Lacks(*this, "Caption"); }
void Control::Impl::SetCaption(const std::string&) { Lacks(*this, "Caption"); }
void Control::Impl::SetFont(const Font&) { Lacks(*this, "Font"); }
void Control::Impl::SetRightToLeft(bool) { Lacks(*this, "RightToLeft"); }
void Control::Impl::OnClick(std::function<void()>) { Lacks(*this, "Click"); }

void Control::Impl::TakeFocus(FocusFrom) { SetFocus(Window()); }

bool Control::Impl::TakesFocus() const {
  const auto style = static_cast<DWORD>(GetWindowLongPtrW(Window(), GWL_STYLE));
  return (style & WS_TABSTOP) != 0 && IsWindowEnabled(Window());
}

bool Control::Impl::HasFocus() const {
  const HWND focus = GetFocus();
  return focus && (focus == mWindow || IsChild(mWindow, focus));
}

void Control::Impl::JoinForm(std::function<void()> mover, HWND toolTips) {
  mMover = std::move(mover);
  mToolTips = toolTips;
  AddToolTip(mToolTips, Window());
}

void Control::Impl::SetToolTipText(const std::string& text) {
  if (mToolTips) ChangeToolTip(mToolTips, Window(), text);
  mToolTipText = text;
}

void Control::Impl::End() {
  mMover = nullptr;
  if (mWindow) ForgetWindowName(mWindow);
  mWindow = nullptr;
}

void Control::Impl::Move(const Place& place) {
  Window();
  mPlace = place;
  if (mMover) mMover();
}

std::string Control::Kind() const {
  mImpl->Window();
  return mImpl->kind;
}

std::string Control::Name() const {
  mImpl->Window();
  return mImpl->name;
}

std::string Control::Tag() const {
  mImpl->Window();
  return {};
}

std::string Control::Caption() const {
  mImpl->Window();
  return mImpl->Caption();
}

void Control::SetCaption(const std::string& caption) {
  mImpl->Window();
  mImpl->SetCaption(caption);
}

std::string Control::ToolTipText() const {
  mImpl->Window();
  return mImpl->ToolTipText();
}

void Control::SetToolTipText(const std::string& text) {
  mImpl->Window();
  mImpl->SetToolTipText(text);
}

bool Control::Enabled() const { return IsWindowEnabled(mImpl->Window()) != 0; }

void Control::SetEnabled(bool enabled) {
  const HWND window = mImpl->Window();
  const bool hadFocus = GetFocus() == window;
  EnableWindow(window, enabled);
  // A disabled window keeps the focus and hears no key: the form gives it to the next control.
  if (hadFocus && !enabled) SetFocus(GetParent(window));
}

void Control::SetFont(const Font& font) {
  mImpl->Window();
  mImpl->SetFont(font);
}

void Control::SetRightToLeft(bool rightToLeft) {
  mImpl->Window();
  mImpl->SetRightToLeft(rightToLeft);
}

float Control::Left() const {
  mImpl->Window();
  return mImpl->Where().left;
}

float Control::Top() const {
  mImpl->Window();
  return mImpl->Where().top;
}

float Control::Width() const {
  mImpl->Window();
  return mImpl->Where().width;
}

float Control::Height() const {
  mImpl->Window();
  return mImpl->Where().height;
}

void Control::SetLeft(float twips) {
  Place place = mImpl->Where();
  place.left = twips;
  mImpl->Move(place);
}

void Control::SetTop(float twips) {
  Place place = mImpl->Where();
  place.top = twips;
  mImpl->Move(place);
}

void Control::SetWidth(float twips) {
  Place place = mImpl->Where();
  place.width = CheckedSize(twips);
  mImpl->Move(place);
}

void Control::SetHeight(float twips) {
  Place place = mImpl->Where();
  place.height = CheckedSize(twips);
  mImpl->Move(place);
}

void Control::BringToFront() {
  SetWindowPos(mImpl->Window(), HWND_TOP, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
}

std::vector<ContainerItem> Control::Items() const {
  mImpl->Window();
  Lacks(*mImpl, "Items");
}

void Control::OnClick(std::function<void()> handler) {
  mImpl->Window();
  mImpl->OnClick(std::move(handler));
}

}  // namespace platform
