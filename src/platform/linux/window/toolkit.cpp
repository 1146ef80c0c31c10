// Starting GTK, and the measures of the screen.
//
// SPDX-License-Identifier: MIT
#include "platform/linux/window/toolkit.h"

#include <gtk/gtk.h>

#include <string>

#include "platform/linux/documents/trust_store.h"
#include "platform/linux/g_ref.h"
#include "platform/window/form.h"

namespace platform {
namespace {

constexpr const char* kPreferDark = "gtk-application-prefer-dark-theme";

void SetWindowIcons() {
  GList* icons = nullptr;
  for (const char* size : {"16", "32", "48", "128", "256"}) {
    const std::string path = std::string("/com/velorsoftware/VoiceSetup/icon-") + size + ".png";
    // A size that the build has not is left out.
    if (GdkPixbuf* icon = gdk_pixbuf_new_from_resource(path.c_str(), nullptr))
      icons = g_list_append(icons, icon);
  }
  gtk_window_set_default_icon_list(icons);
  g_list_free_full(icons, g_object_unref);
}

/// Dots per inch in GTK's coordinates.
double Resolution() {
  GdkScreen* screen = gdk_screen_get_default();
  const double resolution = screen ? gdk_screen_get_resolution(screen) : -1;
  return resolution > 0 ? resolution : 96;
}

int ScaleFactor() {
  GdkDisplay* display = gdk_display_get_default();
  GdkMonitor* monitor = display ? gdk_display_get_monitor(display, 0) : nullptr;
  return monitor ? gdk_monitor_get_scale_factor(monitor) : 1;
}

/// WebKit takes this theme for a light one, and any theme for dark where dark ones are preferred.
void FollowTheme(GtkSettings* settings, GParamSpec*, gpointer) {
  gchar* setting = nullptr;
  g_object_get(settings, "gtk-theme-name", &setting, nullptr);
  const GMemory<gchar> theme(setting);
  if (TextOf(theme.get()) == "HighContrastInverse") {
    g_object_set(settings, kPreferDark, TRUE, nullptr);
  } else {
    gtk_settings_reset_property(settings, kPreferDark);
  }
}

/// A page of check boxes needs no graphics card. The settings of a view say the same; but WebKit
/// would have looked for one and started its driver before it reads them. A compiler for scripts
/// would take seven megabytes, and is what most holes in an engine are found in.
void TellEngine() {
  for (const auto& [name, value] : kEngineVariables) g_setenv(name, value, FALSE);
}

}  // namespace

bool StartToolkit() {
  // Before there are threads, which may read the environment.
  TellEngine();
  PrepareDownloads();
  // X11 first, on a Wayland desktop too: only there can the second start of the program bring the
  // first one's window to the foreground, which Wayland grants to nobody but the focused program.
  gdk_set_allowed_backends("x11,*");
  g_set_prgname("VelorVoiceSetup");  // the windows' class too, by which desktops find the icon
  // No arguments are passed: the command line is the program's alone.
  if (!gtk_init_check(nullptr, nullptr)) return false;
  SetWindowIcons();
  GtkSettings* const settings = gtk_settings_get_default();
  g_signal_connect(settings, "notify::gtk-theme-name", G_CALLBACK(FollowTheme), nullptr);
  FollowTheme(settings, nullptr, nullptr);
  return true;
}

double TwipsPerUnit() { return 1440 / Resolution(); }

float TwipsPerPixelX() { return static_cast<float>(TwipsPerUnit() / ScaleFactor()); }

// GTK knows one resolution for both directions.
float TwipsPerPixelY() { return TwipsPerPixelX(); }

}  // namespace platform
