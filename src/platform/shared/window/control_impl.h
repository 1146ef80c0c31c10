// The inside of a control as far as it is the same on every system: what all kinds share, and where
// they stand. A back end's NativeControl derives from it, and its kinds of control from that.
//
// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "platform/window/control.h"

namespace platform {

/// Twips, as they were set: what is read back does not depend on the screen's pixels.
struct Place {
  float left = 0;
  float top = 0;
  float width = 0;
  float height = 0;
};

/// Each kind overrides what it has more; what it lacks throws.
struct Control::Impl {
  Impl(std::string kind, std::string name);
  virtual ~Impl() = default;
  Impl(const Impl&) = delete;
  Impl& operator=(const Impl&) = delete;

  virtual std::string Caption() const;
  virtual void SetCaption(const std::string& caption);
  virtual void SetFont(const Font& font);
  virtual void SetRightToLeft(bool rightToLeft);
  virtual void OnClick(std::function<void()>&& handler);
  /// Announces the text of a Label now; the form is active.
  virtual void Speak(const std::string&) {}
  virtual std::string Tag() const { return {}; }
  virtual std::vector<ContainerItem> Items() const;

  // What the system keeps for every kind.
  virtual std::string ToolTipText() const = 0;
  virtual void SetToolTipText(const std::string& text) = 0;
  virtual bool Enabled() const = 0;
  virtual void SetEnabled(bool enabled) = 0;
  virtual void BringToFront() = 0;

  /// Throws std::logic_error when the form has gone.
  virtual void CheckLives() const = 0;
  /// The form has gone: nothing of the control may be used or told any more.
  virtual void End() { mMover = nullptr; }

  void Announce(const std::string& text);
  /// To be called whenever the form becomes active or inactive.
  virtual void FormActivated(bool active);

  /// The form, once it has the control, moves it to its place whenever that changes.
  void SetMover(std::function<void()> mover) { mMover = std::move(mover); }
  void Move(const Place& place);
  const Place& Where() const { return mPlace; }

  /// Throws for a property that the control has not.
  [[noreturn]] void Lacks(const std::string& property) const;

  const std::string kind;
  const std::string name;

 private:
  Place mPlace;
  bool mFormActive = false;
  std::string mAnnouncement;  // not spoken yet
  std::function<void()> mMover;
};

}  // namespace platform
