// The inside of a control, shared by the files that make the kinds and the form that places them.
//
// SPDX-License-Identifier: MIT
#pragma once

#include <windows.h>

#include <functional>
#include <memory>
#include <string>

#include "platform/control.h"

namespace platform {

/// Twips, as they were set: what is read back does not depend on the screen's pixels.
struct Place {
  float left = 0;
  float top = 0;
  float width = 0;
  float height = 0;
};

/// Where the keyboard's focus comes from: another window, or by the Tab key from the control before
/// or behind.
enum class FocusFrom { kOutside, kBefore, kBehind };

/// What all kinds share. Each kind overrides what it has more; what it lacks throws. The form
/// hands on what its window is told of the control (commands, drawing).
struct Control::Impl {
  Impl(std::string kind, std::string name);
  virtual ~Impl() = default;
  Impl(const Impl&) = delete;
  Impl& operator=(const Impl&) = delete;

  virtual std::string Caption() const;
  virtual void SetCaption(const std::string& caption);
  virtual void SetFont(const Font& font);
  virtual void SetRightToLeft(bool rightToLeft);
  virtual void OnClick(std::function<void()> handler);

  std::string ToolTipText() const { return mToolTipText; }
  void SetToolTipText(const std::string& text);

  /// The control was pressed.
  virtual void Pressed() {}
  /// The form's window became the active one, or another did.
  virtual void FormActivated(bool) {}
  /// A control that draws itself has to.
  virtual void Draw(const DRAWITEMSTRUCT&) {}
  /// The form's window is on a screen of another density, or the system's fonts changed.
  virtual void DpiChanged() {}
  /// The control shall take the keyboard.
  virtual void TakeFocus(FocusFrom from);
  virtual bool TakesFocus() const;
  /// Whether the keyboard belongs to this control's window or one inside it.
  bool HasFocus() const;
  /// A key message while it has the focus; true when it needs no further handling.
  virtual bool TakeKey(MSG&) { return false; }
  /// Whether the Enter key is left to the window with the focus instead of pressing a button.
  virtual bool KeepsEnter() const { return false; }

  /// Throws std::logic_error when the form has gone.
  HWND Window() const;
  bool Lives() const { return mWindow != nullptr; }
  /// The form has gone: nothing of the control may be used or told any more.
  virtual void End();

  /// The form, once it has the control, moves the window to its place whenever that changes, and
  /// has the window that shows tool tips.
  void JoinForm(std::function<void()> mover, HWND toolTips);
  void Move(const Place& place);
  const Place& Where() const { return mPlace; }

  const std::string kind;
  const std::string name;

 protected:
  void SetWindow(HWND window);

 private:
  HWND mWindow = nullptr;
  Place mPlace;
  std::function<void()> mMover;
  HWND mToolTips = nullptr;
  std::string mToolTipText;
};

/// Makes a control of one of the kinds that platform/form.h names, inside a form's window; throws
/// for another.
std::shared_ptr<Control::Impl> MakeControl(HWND form, const std::string& kind,
                                           const std::string& name);

}  // namespace platform
