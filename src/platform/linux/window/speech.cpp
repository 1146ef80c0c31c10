// Two ways, by what ATK offers: its notification signal since 2.50. Before that Orca ignores ATK's
// announcement signal, and presents an accessible of the role notification when it becomes showing;
// without its role's name if the accessible belongs to a status bar.
//
// SPDX-License-Identifier: MIT
#include "platform/linux/window/speech.h"

namespace platform {
namespace {

constexpr const char* kSignal = "notification";
constexpr int kPolite = 1;  // ATK_LIVE_POLITE, which older headers lack

/// A label outside of any window, for its accessible alone.
GRef<GtkWidget> MakeAccessible(AtkRole role, AtkObject* parent, const std::string& text) {
  auto widget = GRef<GtkWidget>::Share(gtk_label_new(text.c_str()));
  AtkObject* const accessible = gtk_widget_get_accessible(widget.Get());
  atk_object_set_role(accessible, role);
  atk_object_set_parent(accessible, parent);
  return widget;
}

}  // namespace

void Speech::Say(GtkWidget* source, const std::string& text) {
  AtkObject* const accessible = gtk_widget_get_accessible(source);
  if (g_signal_lookup(kSignal, ATK_TYPE_OBJECT) != 0) {
    g_signal_emit_by_name(accessible, kSignal, text.c_str(), kPolite);
  } else {
    ShowNotification(accessible, text);
  }
}

void Speech::ShowNotification(AtkObject* source, const std::string& text) {
  if (!mStatusBar) mStatusBar = MakeAccessible(ATK_ROLE_STATUSBAR, source, "");
  mNotification =
      MakeAccessible(ATK_ROLE_NOTIFICATION, gtk_widget_get_accessible(mStatusBar.Get()), text);
  atk_object_notify_state_change(gtk_widget_get_accessible(mNotification.Get()), ATK_STATE_SHOWING,
                                 TRUE);
}

}  // namespace platform
