// The tool tip over the page, which WebKit would rather not show.
//
// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/window/form.h"
#include "platform/window/web_browser.h"
#include "tests/contract/linux/window_widgets.h"
#include "tests/contract/window_driver.h"

namespace {

void FindText(GtkWidget* widget, gpointer data) {
  auto& text = *static_cast<std::string*>(data);
  if (GTK_IS_LABEL(widget)) text += gtk_label_get_text(GTK_LABEL(widget));
  if (GTK_IS_CONTAINER(widget)) gtk_container_forall(GTK_CONTAINER(widget), FindText, data);
}

/// The text beside the pointer; empty where none is shown.
std::string ShownTip() {
  std::string text;
  GList* const windows = gtk_window_list_toplevels();
  for (GList* at = windows; at; at = at->next) {
    const bool popup = gtk_window_get_window_type(GTK_WINDOW(at->data)) == GTK_WINDOW_POPUP;
    if (popup && gtk_widget_get_mapped(GTK_WIDGET(at->data))) FindText(GTK_WIDGET(at->data), &text);
  }
  g_list_free(windows);
  return text;
}

/// To a place in the widget, in pixels.
void PointAt(GtkWidget* widget, int x, int y) {
  int left = 0, top = 0;
  gdk_window_get_root_coords(gtk_widget_get_window(widget), x, y, &left, &top);
  const std::string atX = std::to_string(left), atY = std::to_string(top);
  const char* command[] = {"xdotool", "mousemove", atX.c_str(), atY.c_str(), nullptr};
  int status = -1;
  g_spawn_sync(nullptr, const_cast<char**>(command), nullptr, G_SPAWN_SEARCH_PATH, nullptr, nullptr,
               nullptr, nullptr, &status, nullptr);
  ASSERT_EQ(status, 0) << "xdotool is needed";
}

TEST(ToolTip, IsShownOverThePageWhereverThePointerGoes) {
  peer::Begin();
  platform::Form form("form", 9000, 6000);
  auto control = form.AddControl("WebBrowser", "browser", 9000, 6000);
  platform::WebBrowser browser(control);
  control.SetToolTipText("What to do here");
  form.Show();
  browser.Navigate(peer::PageWith({{"a", false, false}, {"b", false, false}}));
  auto* const page = widgets::ViewOf("form", "browser");
  ASSERT_TRUE(
      peer::RunUntil([&] { return widgets::AskPage(page, "document.links.length") == "1"; }));
  for (const int y : {200, 60, 30}) {
    PointAt(GTK_WIDGET(page), 100, y);
    EXPECT_TRUE(peer::RunUntil([] { return ShownTip() == "What to do here"; })) << y;
  }
  control.SetToolTipText("");
  PointAt(GTK_WIDGET(page), 90, 200);
  EXPECT_TRUE(peer::RunUntil([] { return ShownTip().empty(); }));
}

}  // namespace
