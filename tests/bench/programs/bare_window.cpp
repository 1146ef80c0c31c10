// The reference for starting, idling and memory on Linux: the least that shows a page with the
// toolkit and engine of the program. One window, one view, one file. Without a file: a label, and
// the engine's libraries loaded.
//
// SPDX-License-Identifier: MIT
#include <gtk/gtk.h>
#include <webkit2/webkit2.h>

int main(int argc, char** argv) {
  if (argc > 2 || !gtk_init_check(nullptr, nullptr)) return 2;
  GtkWidget* window = gtk_window_new(GTK_WINDOW_TOPLEVEL);
  // As large as the page is in the program.
  gtk_window_set_default_size(GTK_WINDOW(window), 582, 537);
  g_signal_connect(window, "destroy", G_CALLBACK(gtk_main_quit), nullptr);
  if (argc == 1) {
    gtk_container_add(GTK_CONTAINER(window), gtk_label_new("Loading"));
    gtk_widget_show_all(window);
    gtk_main();
    return 0;
  }
  GtkWidget* view = webkit_web_view_new();
  // Without it the engine would first look for a graphics card, which costs more than all the rest.
  webkit_settings_set_hardware_acceleration_policy(
      webkit_web_view_get_settings(WEBKIT_WEB_VIEW(view)),
      WEBKIT_HARDWARE_ACCELERATION_POLICY_NEVER);
  gtk_container_add(GTK_CONTAINER(window), view);
  char* address = g_filename_to_uri(argv[1], nullptr, nullptr);
  webkit_web_view_load_uri(WEBKIT_WEB_VIEW(view), address);
  g_free(address);
  // Only now: the engine starts while the window comes up.
  gtk_widget_show_all(window);
  gtk_main();
  return 0;
}
