// The handle on a control.
//
// SPDX-License-Identifier: MIT
#include "platform/window/control.h"

#include <utility>

#include "platform/errors.h"
#include "platform/shared/window/control_impl.h"

namespace platform {
namespace {

float CheckedSize(float twips) {
  // The comparison is written so that a number that is none is refused too.
  if (!(twips >= 0)) throw Unsupported("a size cannot be negative");
  return twips;
}

/// What every property begins with.
Control::Impl& Living(const std::shared_ptr<Control::Impl>& control) {
  control->CheckLives();
  return *control;
}

}  // namespace

Control::Impl::Impl(std::string kind, std::string name)
    : kind(std::move(kind)), name(std::move(name)) {}

void Control::Impl::Lacks(const std::string& property) const {
  throw Unsupported("a " + kind + " has no " + property);
}

std::string Control::Impl::Caption() const { Lacks("Caption"); }
void Control::Impl::SetCaption(const std::string&) { Lacks("Caption"); }
void Control::Impl::SetFont(const Font&) { Lacks("Font"); }
void Control::Impl::SetRightToLeft(bool) { Lacks("RightToLeft"); }
void Control::Impl::OnClick(std::function<void()>&&) { Lacks("Click"); }
std::vector<ContainerItem> Control::Impl::Items() const { Lacks("Items"); }

void Control::Impl::Announce(const std::string& text) {
  if (kind != "Label") Lacks("announcements");
  if (!text.empty()) mAnnouncement = text;
  FormActivated(mFormActive);
}

void Control::Impl::FormActivated(bool active) {
  mFormActive = active;
  if (!active || mAnnouncement.empty()) return;
  const std::string text = std::exchange(mAnnouncement, {});
  Speak(text);
}

void Control::Impl::Move(const Place& place) {
  CheckLives();
  mPlace = place;
  if (mMover) mMover();
}

std::string Control::Kind() const { return Living(mImpl).kind; }

std::string Control::Name() const { return Living(mImpl).name; }

std::string Control::Tag() const { return Living(mImpl).Tag(); }

std::string Control::Caption() const { return Living(mImpl).Caption(); }

void Control::SetCaption(const std::string& caption) { Living(mImpl).SetCaption(caption); }

std::string Control::ToolTipText() const { return Living(mImpl).ToolTipText(); }

void Control::SetToolTipText(const std::string& text) { Living(mImpl).SetToolTipText(text); }

bool Control::Enabled() const { return Living(mImpl).Enabled(); }

void Control::SetEnabled(bool enabled) { Living(mImpl).SetEnabled(enabled); }

void Control::SetFont(const Font& font) { Living(mImpl).SetFont(font); }

void Control::SetRightToLeft(bool rightToLeft) { Living(mImpl).SetRightToLeft(rightToLeft); }

float Control::Left() const { return Living(mImpl).Where().left; }

float Control::Top() const { return Living(mImpl).Where().top; }

float Control::Width() const { return Living(mImpl).Where().width; }

float Control::Height() const { return Living(mImpl).Where().height; }

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

void Control::Announce(const std::string& text) { Living(mImpl).Announce(text); }

void Control::BringToFront() { Living(mImpl).BringToFront(); }

std::vector<ContainerItem> Control::Items() const { return Living(mImpl).Items(); }

void Control::OnClick(std::function<void()> handler) { Living(mImpl).OnClick(std::move(handler)); }

}  // namespace platform
