// The inside of a control on GTK, shared by the files that make the kinds and the form that places
// them.
//
// SPDX-License-Identifier: MIT
#pragma once

#include <gtk/gtk.h>

#include <memory>
#include <string>

#include "platform/linux/g_ref.h"
#include "platform/shared/window/control_impl.h"

namespace platform {

class NativeControl : public Control::Impl {
 public:
  NativeControl(std::string kind, std::string name, GtkWidget* fresh);

  std::string ToolTipText() const override;
  void SetToolTipText(const std::string& text) override;
  bool Enabled() const override;
  void SetEnabled(bool enabled) override;
  void BringToFront() override;
  void CheckLives() const override { Widget(); }
  void End() override;

  /// Tab has come here: false when there is nothing, or nothing more, to focus.
  virtual bool TakeFocus(GtkDirectionType direction);

  /// A key that was pressed anywhere in the window. Returns true if the control handled it.
  virtual bool HandleKey(const GdkEventKey&) { return false; }

  /// Throws std::logic_error when the form has gone.
  GtkWidget* Widget() const { return mWidget.Get(); }
  bool Lives() const { return static_cast<bool>(mWidget); }

 private:
  GRef<GtkWidget> mWidget;
};

/// Makes a control of one of the kinds that platform/window/form.h names; throws for another.
std::shared_ptr<NativeControl> MakeControl(const std::string& kind, const std::string& name);

}  // namespace platform
