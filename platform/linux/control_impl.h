// The inside of a control, shared by the files that make the kinds and the form that places them.
//
// SPDX-License-Identifier: MIT
#pragma once

#include <gtk/gtk.h>

#include <functional>
#include <memory>
#include <string>

#include "platform/control.h"
#include "platform/linux/g_ref.h"

namespace platform {

/// Twips, as they were set: what is read back does not depend on the screen's pixels.
struct Place {
  float left = 0;
  float top = 0;
  float width = 0;
  float height = 0;
};

/// What all kinds share. Each kind overrides what it has more; what it lacks throws.
struct Control::Impl {
  Impl(std::string kind, std::string name, GtkWidget* fresh);
  virtual ~Impl() = default;
  Impl(const Impl&) = delete;
  Impl& operator=(const Impl&) = delete;

  virtual std::string Caption() const;
  virtual void SetCaption(const std::string& caption);
  virtual void SetFont(const Font& font);
  virtual void SetRightToLeft(bool rightToLeft);
  virtual void OnClick(std::function<void()>&& handler);

  /// Tab has come here: false when there is nothing, or nothing more, to focus.
  virtual bool TakeFocus(GtkDirectionType direction);

  /// Throws std::logic_error when the form has gone.
  GtkWidget* Widget() const { return mWidget.Get(); }
  bool Lives() const { return static_cast<bool>(mWidget); }
  /// The form has gone: nothing of the control may be used or told any more.
  virtual void End();

  /// The form, once it has the control, moves the widget to its place whenever that changes.
  void SetMover(std::function<void()> mover) { mMover = std::move(mover); }
  void Move(const Place& place);
  const Place& Where() const { return mPlace; }

  const std::string kind;
  const std::string name;

 private:
  GRef<GtkWidget> mWidget;
  Place mPlace;
  std::function<void()> mMover;
};

/// Makes a control of one of the kinds that platform/form.h names; throws for another.
std::shared_ptr<Control::Impl> MakeControl(const std::string& kind, const std::string& name);

}  // namespace platform
