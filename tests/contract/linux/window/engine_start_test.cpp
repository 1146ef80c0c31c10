// That the window does not wait for the browser's engine.
//
// SPDX-License-Identifier: MIT
#include "platform/linux/signals.h"
#include "tests/contract/linux/window_widgets.h"
#include "tests/contract/window_case.h"

namespace {

TEST(EngineStart, ComesWhenTheWindowHasBeenPainted) {
  peer::Begin();
  platform::Form form("form", 6000, 4500);
  platform::WebBrowser browser{form.AddControl("WebBrowser", "browser", 6000, 4500)};
  browser.Navigate(peer::PageWith({{"a", false, false}}));
  bool painted = false, startedBefore = false;
  GtkWidget* const control = widgets::WidgetOf("form", "browser");
  const auto painting = platform::Connect<gboolean(cairo_t*)>(
      widgets::WindowOf("form"), "draw", [&](cairo_t*) -> gboolean {
        if (!painted) startedBefore = gtk_bin_get_child(GTK_BIN(control)) != nullptr;
        painted = true;
        return FALSE;
      });
  form.Show();
  ASSERT_TRUE(peer::RunUntil([&] { return painted; }));
  EXPECT_FALSE(startedBefore);
  EXPECT_TRUE(peer::RunUntil([] {
    return widgets::AskPage(widgets::ViewOf("form", "browser"), "!!document.getElementById('a')") ==
           "true";
  }));
}

}  // namespace
