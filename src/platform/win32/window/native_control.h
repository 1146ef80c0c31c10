// The inside of a control on Windows, shared by the files that make the kinds and the form that
// places them.
//
// SPDX-License-Identifier: MIT
#pragma once

#include <windows.h>

#include <memory>
#include <string>

#include "platform/shared/window/control_impl.h"

namespace platform {

/// Where the keyboard's focus comes from: another window, or by the Tab key from the control before
/// or behind.
enum class FocusFrom { kOutside, kBefore, kBehind };

/// The form hands on what its window is told of the control (commands, drawing).
class NativeControl : public Control::Impl {
 public:
  using Impl::Impl;

  std::string ToolTipText() const override { return mToolTipText; }
  void SetToolTipText(const std::string& text) override;
  bool Enabled() const override;
  void SetEnabled(bool enabled) override;
  void BringToFront() override;
  void CheckLives() const override { Window(); }
  void End() override;

  /// The control was pressed.
  virtual void Pressed() {}
  /// A control that draws itself has to.
  virtual void Draw(const DRAWITEMSTRUCT&) {}
  /// The form's window is on a screen of another density.
  virtual void DpiChanged() {}
  /// The system's fonts or colours changed.
  virtual void LooksChanged() {}
  /// Another control of the form got the focus.
  virtual void FocusMoved() {}
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

  /// The form, once it has the control, gives it the window that shows tool tips.
  void JoinToolTips(HWND toolTips);

 protected:
  void SetWindow(HWND window);

 private:
  HWND mWindow = nullptr;
  HWND mToolTips = nullptr;
  std::string mToolTipText;
};

/// To be called after a window's style was changed: the system keeps some of it in a cache.
void ApplyStyle(HWND window);

/// Makes a control of one of the kinds that platform/window/form.h names, inside a form's window;
/// throws for another.
std::shared_ptr<NativeControl> MakeControl(HWND form, const std::string& kind,
                                           const std::string& name);

}  // namespace platform
