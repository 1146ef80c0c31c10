// What all kinds of control share on GTK. What a kind has of its own is in control_kinds.cpp and
// browser_control.cpp.
//
// SPDX-License-Identifier: MIT
#include "platform/linux/window/native_control.h"

#include <utility>

namespace platform {

NativeControl::NativeControl(std::string kind, std::string name, GtkWidget* fresh)
    : Impl(std::move(kind), std::move(name)), mWidget(GRef<GtkWidget>::Share(fresh)) {
  gtk_widget_set_name(fresh, this->name.c_str());
}

std::string NativeControl::ToolTipText() const {
  const GMemory<char> text(gtk_widget_get_tooltip_text(Widget()));
  return TextOf(text.get());
}

void NativeControl::SetToolTipText(const std::string& text) {
  gtk_widget_set_tooltip_text(Widget(), text.empty() ? nullptr : text.c_str());
}

bool NativeControl::Enabled() const { return gtk_widget_get_sensitive(Widget()); }

void NativeControl::SetEnabled(bool enabled) { gtk_widget_set_sensitive(Widget(), enabled); }

void NativeControl::BringToFront() {
  if (gtk_widget_get_has_window(Widget())) {
    if (GdkWindow* window = gtk_widget_get_window(Widget())) gdk_window_raise(window);
    return;
  }
  // Widgets without a window of their own are painted in the order in which they were put in.
  GtkWidget* parent = gtk_widget_get_parent(Widget());
  if (!parent) return;
  gtk_container_remove(GTK_CONTAINER(parent), Widget());
  gtk_container_add(GTK_CONTAINER(parent), Widget());
  Move(Where());
}

void NativeControl::End() {
  Impl::End();
  mWidget = {};
}

bool NativeControl::TakeFocus(GtkDirectionType direction) {
  return gtk_widget_child_focus(Widget(), direction) != FALSE;
}

}  // namespace platform
