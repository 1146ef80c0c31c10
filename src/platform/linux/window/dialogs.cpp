// The message box, on GTK's own.
//
// SPDX-License-Identifier: MIT
#include "platform/window/dialogs.h"

#include <gtk/gtk.h>

#include <stdexcept>

#include "platform/linux/signals.h"
#include "platform/linux/window/form_window.h"

namespace platform {
namespace {

/// A widget's direction is its own, not its container's.
void SetDirection(GtkWidget* widget, gpointer direction) {
  gtk_widget_set_direction(widget, static_cast<GtkTextDirection>(GPOINTER_TO_INT(direction)));
  if (GTK_IS_CONTAINER(widget))
    gtk_container_forall(GTK_CONTAINER(widget), SetDirection, direction);
}

/// Between icon, text and edges.
constexpr int kGap = 18;

/// GTK 3 has message types and shows no icon for any of them. What it leaves around the text is
/// meant for a headline above it, so a text alone would stick to the title.
void AddIcon(GtkMessageDialog* dialog) {
  GtkWidget* const icon = gtk_image_new_from_icon_name("dialog-warning", GTK_ICON_SIZE_DIALOG);
  gtk_widget_set_valign(icon, GTK_ALIGN_CENTER);
  gtk_widget_show(icon);
  GtkWidget* const texts = gtk_message_dialog_get_message_area(dialog);
  gtk_widget_set_valign(texts, GTK_ALIGN_CENTER);
  GtkWidget* const row = gtk_widget_get_parent(texts);
  gtk_container_add(GTK_CONTAINER(row), icon);
  gtk_box_reorder_child(GTK_BOX(row), icon, 0);
  gtk_box_set_spacing(GTK_BOX(row), kGap);
  // Below there is room enough, before the button.
  g_object_set(row, "margin-start", kGap, "margin-end", kGap, "margin-top", kGap, nullptr);
}

}  // namespace

void ShowMessage(const std::string& text, const std::string& title, bool rightToLeft) {
  if (!gdk_display_get_default()) throw std::runtime_error("there is no display");
  const auto dialog = GRef<GtkWidget>::Share(
      gtk_message_dialog_new(VisibleFormWindow(), GTK_DIALOG_MODAL, GTK_MESSAGE_WARNING,
                             GTK_BUTTONS_OK, "%s", text.c_str()));
  gtk_window_set_title(GTK_WINDOW(dialog.Get()), title.c_str());
  atk_object_set_name(gtk_widget_get_accessible(dialog.Get()), title.c_str());
  AddIcon(GTK_MESSAGE_DIALOG(dialog.Get()));
  SetDirection(dialog.Get(), GINT_TO_POINTER(rightToLeft ? GTK_TEXT_DIR_RTL : GTK_TEXT_DIR_LTR));
  bool closed = false;
  // Pressing OK, Escape and the close button all respond; that is all there is to know.
  const SignalConnection response =
      Connect<void(int)>(dialog.Get(), "response", [&](int) { closed = true; });
  const SignalConnection destroy = Connect<void()>(dialog.Get(), "destroy", [&] { closed = true; });
  gtk_window_present(GTK_WINDOW(dialog.Get()));
  while (!closed) g_main_context_iteration(nullptr, TRUE);
  gtk_widget_destroy(dialog.Get());
}

}  // namespace platform
