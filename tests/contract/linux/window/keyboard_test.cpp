// The window without a mouse: real key strokes, through the display and its window manager.
//
// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/linux/window/toolkit.h"
#include "platform/window/form.h"
#include "platform/window/web_browser.h"
#include "tests/contract/linux/window_widgets.h"
#include "tests/contract/window_driver.h"

namespace {

class Keyboard : public testing::Test {
 protected:
  Keyboard() {
    peer::Begin();
    install.SetCaption("&Install");
    form.Show();
    browser.Navigate(
        peer::PageWith({{"a", false, false}, {"b", false, true}, {"c", false, false}}));
    EXPECT_TRUE(Reaches("a"));
  }

  /// A key stroke on the display itself, named as in "alt+F4".
  static void Type(const std::string& key) {
    const char* command[] = {"xdotool", "key", key.c_str(), nullptr};
    int status = -1;
    g_spawn_sync(nullptr, const_cast<char**>(command), nullptr, G_SPAWN_SEARCH_PATH, nullptr,
                 nullptr, nullptr, nullptr, &status, nullptr);
    ASSERT_EQ(status, 0) << "xdotool is needed";
  }

  bool FocusIsOn(const std::string& control) {
    GtkWindow* const window = widgets::WindowOf("form");
    GtkWidget* const focused = gtk_window_get_focus(window);
    GtkWidget* const widget = widgets::WidgetOf("form", control);
    return gtk_window_is_active(window) && focused &&
           (focused == widget || gtk_widget_is_ancestor(focused, widget));
  }
  std::string Ask(const std::string& script) {
    return widgets::AskPage(widgets::ViewOf("form", "browser"), script);
  }
  std::string Element() { return Ask("document.activeElement ? document.activeElement.id : ''"); }
  bool Reaches(const std::string& id) {
    return peer::RunUntil([&] { return FocusIsOn("browser") && Element() == id; });
  }

  platform::Form form{"form", 9000, 6000};
  platform::WebBrowser browser{form.AddControl("WebBrowser", "browser", 9000, 5000)};
  platform::Control install = form.AddControl("CommandButton", "install", 1215, 495);
};

TEST_F(Keyboard, TabGoesThroughTheBoxesToTheButtonAndBackIntoThePage) {
  // The button stands above the browser here: the order of adding counts, not the place.
  for (const char* id : {"c", "link"}) {  // "b" is disabled
    Type("Tab");
    EXPECT_TRUE(Reaches(id)) << id;
  }
  Type("Tab");
  EXPECT_TRUE(peer::RunUntil([this] { return FocusIsOn("install"); }));
  Type("Tab");
  EXPECT_TRUE(Reaches("a"));
}

TEST_F(Keyboard, ShiftTabGoesTheSameWayBackwards) {
  Type("shift+Tab");
  EXPECT_TRUE(peer::RunUntil([this] { return FocusIsOn("install"); }));
  Type("shift+Tab");
  EXPECT_TRUE(Reaches("link"));
}

TEST_F(Keyboard, TheFirstKeyAfterComingBackIsForThePage) {
  Type("shift+Tab");
  ASSERT_TRUE(peer::RunUntil([this] { return FocusIsOn("install"); }));
  Type("Tab");
  ASSERT_TRUE(Reaches("a"));
  Type("space");
  EXPECT_TRUE(
      peer::RunUntil([this] { return Ask("document.getElementById('a').checked") == "true"; }));
}

TEST_F(Keyboard, ShiftTabComesBackToTheBoxThatHadTheFocus) {
  Type("Down");
  ASSERT_TRUE(Reaches("c"));
  gtk_widget_grab_focus(widgets::WidgetOf("form", "install"));
  ASSERT_TRUE(peer::RunUntil([this] { return FocusIsOn("install"); }));
  Type("shift+Tab");
  EXPECT_TRUE(Reaches("c"));
}

TEST_F(Keyboard, ThePageStartsAtTheFirstTickedBox) {
  browser.Navigate(peer::PageWith(
      {{"d", false, false}, {"e", true, true}, {"f", true, false}, {"g", true, false}}));
  EXPECT_TRUE(Reaches("f"));
}

TEST_F(Keyboard, SpaceTicksTheBox) {
  Type("space");
  EXPECT_TRUE(
      peer::RunUntil([this] { return Ask("document.getElementById('a').checked") == "true"; }));
}

TEST_F(Keyboard, TheMnemonicPressesTheButton) {
  int clicks = 0;
  install.OnClick([&] { ++clicks; });
  Type("alt+i");
  EXPECT_TRUE(peer::RunUntil([&] { return clicks == 1; }));
}

TEST_F(Keyboard, AltF4Unloads) {
  bool unloaded = false;
  form.OnUnloaded([&] { unloaded = true; });
  Type("alt+F4");
  EXPECT_TRUE(peer::RunUntil([&] { return unloaded; }));
}

TEST_F(Keyboard, ThePageIsAsLargeAsTheScreenSays) {
  // A length of 96 in the page is an inch.
  const double pixels = peer::PlaceOf("form", "browser").width / std::stod(Ask("innerWidth"));
  EXPECT_NEAR(pixels * 96, 1440 / platform::TwipsPerPixelX(), 0.5);
}

}  // namespace
