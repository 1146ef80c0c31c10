// Announcements through the accessibility bus.
//
// SPDX-License-Identifier: MIT
#pragma once

#include <gtk/gtk.h>

#include <string>

#include "platform/linux/g_ref.h"

namespace platform {

/// Announces texts for one widget.
class Speech {
 public:
  /// `source` is where the text comes from; its window should be the active one, since screen
  /// readers ignore others. UTF-8. The screen reader decides when, and whether, it speaks.
  void Say(GtkWidget* source, const std::string& text);

 private:
  void ShowNotification(AtkObject* source, const std::string& text);

  // Never on the screen. Screen readers read the text later, so the last one is kept.
  GRef<GtkWidget> mStatusBar;
  GRef<GtkWidget> mNotification;
};

}  // namespace platform
