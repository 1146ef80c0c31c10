// What a person has chosen for the whole desktop to see better: contrast, large text.
//
// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "platform/linux/signals.h"
#include "platform/window/form.h"
#include "platform/window/web_browser.h"
#include "tests/contract/linux/window_widgets.h"
#include "tests/contract/window_driver.h"
#include "tests/support/folders.h"
#include "tests/support/temporary_folder.h"

namespace {

/// A setting of the desktop, put back at the end.
template <class Value>
class Setting {
 public:
  Setting(const char* name, Value value) : mName(name) {
    g_object_set(gtk_settings_get_default(), name, value, nullptr);
  }
  Setting(const Setting&) = delete;
  Setting& operator=(const Setting&) = delete;
  ~Setting() { gtk_settings_reset_property(gtk_settings_get_default(), mName); }

 private:
  const char* mName;
};

double Luminance(const guchar* pixel) {
  const auto part = [&](int at) {
    const double value = pixel[at] / 255.0;
    return value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
  };
  return 0.2126 * part(0) + 0.7152 * part(1) + 0.0722 * part(2);
}

struct Brightness {
  double ground;
  /// As the guidelines for accessible contents count it: 21 is black on white.
  double contrast;
};

/// Of what is seen on the screen where the control stands. Most of it is ground.
Brightness Look(const std::string& form, const std::string& control) {
  GdkWindow* const window = gtk_widget_get_window(GTK_WIDGET(widgets::WindowOf(form)));
  const peer::Pixels place = peer::PlaceOf(form, control);
  const auto picture = platform::GRef<GdkPixbuf>::Adopt(
      gdk_pixbuf_get_from_window(window, place.left, place.top, place.width, place.height));
  std::vector<double> seen;
  for (int y = 0; y < place.height; ++y) {
    for (int x = 0; x < place.width; ++x) {
      seen.push_back(Luminance(gdk_pixbuf_get_pixels(picture.Get()) +
                               y * gdk_pixbuf_get_rowstride(picture.Get()) +
                               x * gdk_pixbuf_get_n_channels(picture.Get())));
    }
  }
  std::ranges::sort(seen);
  return {seen.at(seen.size() / 2), (seen.back() + 0.05) / (seen.front() + 0.05)};
}

class Appearance : public testing::Test {
 protected:
  Appearance() { peer::Begin(); }

  static constexpr int kButton = 81;

  void Show() {
    mForm = std::make_unique<platform::Form>("form", 9000.0F, 3000.0F);
    mForm->AddControl("Label", "label", 6900, 495).SetCaption("3 voices, 210MB");
    auto button = mForm->AddControl("CommandButton", "button", 1215, 495);
    button.SetFont({"", 0});
    button.SetCaption("&Installieren");
    button.SetTop(900);
    mForm->Show();
    SeePainted();
  }

  static void SeePainted() {
    GtkWindow* const window = widgets::WindowOf("form");
    bool painted = false;
    const auto painting =
        platform::Connect<gboolean(cairo_t*)>(window, "draw", [&](cairo_t*) -> gboolean {
          painted = true;
          return FALSE;
        });
    gtk_widget_queue_draw(GTK_WIDGET(window));
    ASSERT_TRUE(peer::RunUntil([&] { return painted; }));
  }

  static bool IsCut() {
    GtkWidget* const text = gtk_bin_get_child(GTK_BIN(widgets::WidgetOf("form", "button")));
    return pango_layout_is_ellipsized(gtk_label_get_layout(GTK_LABEL(text))) != FALSE;
  }
  static int LabelHeight() {
    int height = 0;
    GtkWidget* const label = widgets::WidgetOf("form", "label");
    pango_layout_get_pixel_size(gtk_label_get_layout(GTK_LABEL(label)), nullptr, &height);
    return height;
  }
  static bool Widens(int pixels) {
    return peer::RunUntil([=] { return peer::PlaceOf("form", "button").width == pixels; });
  }

 private:
  std::unique_ptr<platform::Form> mForm;
};

TEST_F(Appearance, TakesTheColoursOfHighContrast) {
  constexpr double kEnhanced = 7;  // what the guidelines ask of texts at their highest level
  for (const bool dark : {false, true}) {
    SCOPED_TRACE(dark);
    const Setting theme("gtk-theme-name", dark ? "HighContrastInverse" : "HighContrast");
    Show();
    for (const char* control : {"label", "button"}) {
      const Brightness seen = Look("form", control);
      EXPECT_EQ(seen.ground < 0.2, dark) << control << ' ' << seen.ground;
      EXPECT_GE(seen.contrast, kEnhanced) << control;
    }
  }
}

TEST_F(Appearance, CutsNoCaptionInLargeText) {
  const Setting font("gtk-font-name", "Sans 20");
  Show();
  ASSERT_TRUE(Widens(kButton));
  EXPECT_FALSE(IsCut());
}

TEST_F(Appearance, FollowsATextThatGrowsWhileItIsSeen) {
  Show();
  ASSERT_TRUE(Widens(kButton));
  const int before = LabelHeight();
  const Setting font("gtk-font-name", "Sans 20");
  EXPECT_TRUE(peer::RunUntil([&] { return LabelHeight() > before; }));
  SeePainted();
  EXPECT_FALSE(IsCut());
}

TEST_F(Appearance, GrowsAsAWholeWithTheScaleOfTexts) {
  const Setting scale("gtk-xft-dpi", 2 * 96 * PANGO_SCALE);
  Show();
  ASSERT_TRUE(Widens(2 * kButton));
  EXPECT_FALSE(IsCut());
}

/// A face that is installed and not the system's.
std::string OtherFace(PangoContext* context) {
  PangoFontFamily** families = nullptr;
  int count = 0;
  pango_context_list_families(context, &families, &count);
  const platform::GMemory<PangoFontFamily*> list(families);
  const std::string system =
      pango_font_description_get_family(pango_context_get_font_description(context));
  for (int i = 0; i < count; ++i) {
    const std::string name = pango_font_family_get_name(families[i]);
    if (name != system && name.find("Mono") != std::string::npos) return name;
  }
  throw std::runtime_error("no face with letters of one width is installed");
}

class Texts : public Appearance {
 protected:
  Texts() {
    for (auto* control : {&label, &button}) {
      control->SetCaption("Install");
      control->SetWidth(3000);
    }
    button.SetTop(900);
    form.Show();
    SeePainted();
  }

  /// The label inside the button, or the label itself.
  static GtkLabel* TextOf(const char* control) {
    GtkWidget* const widget = widgets::WidgetOf("form", control);
    return GTK_LABEL(GTK_IS_BIN(widget) ? gtk_bin_get_child(GTK_BIN(widget)) : widget);
  }
  /// The face that the text is drawn in.
  static std::string FaceOf(const char* control) {
    PangoLayout* const layout = gtk_label_get_layout(TextOf(control));
    const auto* const run =
        static_cast<PangoGlyphItem*>(pango_layout_get_line_readonly(layout, 0)->runs->data);
    PangoFontDescription* const font = pango_font_describe(run->item->analysis.font);
    std::string face = pango_font_description_get_family(font);
    pango_font_description_free(font);
    return face;
  }
  /// How far the text begins from its control's left edge, in pixels.
  static int IndentOf(const char* control) {
    int left = 0, origin = 0;
    PangoRectangle text;
    gtk_label_get_layout_offsets(TextOf(control), &left, nullptr);
    pango_layout_get_pixel_extents(gtk_label_get_layout(TextOf(control)), nullptr, &text);
    gtk_widget_translate_coordinates(widgets::WidgetOf("form", control),
                                     GTK_WIDGET(widgets::WindowOf("form")), 0, 0, &origin, nullptr);
    return left + text.x - origin;
  }

  platform::Form form{"form", 9000, 3000};
  platform::Control label = form.AddControl("Label", "label", 3000, 495);
  platform::Control button = form.AddControl("CommandButton", "button", 3000, 495);
};

TEST_F(Texts, AreDrawnInTheFaceThatIsSet) {
  const std::string face = OtherFace(gtk_widget_get_pango_context(GTK_WIDGET(TextOf("label"))));
  for (const char* control : {"label", "button"}) EXPECT_NE(FaceOf(control), face);
  label.SetFont({face, 0});
  button.SetFont({face, 0});
  for (const char* control : {"label", "button"}) EXPECT_EQ(FaceOf(control), face) << control;
  button.SetCaption("Cancel");
  EXPECT_EQ(FaceOf("button"), face) << "after another caption";
}

TEST_F(Texts, BeginAtTheRightEdgeWhereSet) {
  const int before = IndentOf("label");
  label.SetRightToLeft(true);
  button.SetRightToLeft(true);
  SeePainted();
  EXPECT_TRUE(peer::RunUntil([&] { return IndentOf("label") > before + 100; }));
  for (const char* control : {"label", "button"})
    EXPECT_EQ(gtk_widget_get_direction(GTK_WIDGET(TextOf(control))), GTK_TEXT_DIR_RTL) << control;
  button.SetCaption("Cancel");
  EXPECT_EQ(gtk_widget_get_direction(GTK_WIDGET(TextOf("button"))), GTK_TEXT_DIR_RTL);
}

/// What is asked of the first bar of the wait page, as the engine takes it.
std::string WaitPageAnswers(const std::string& question) {
  platform::Form form("form", 9000, 6000);
  platform::WebBrowser browser{form.AddControl("WebBrowser", "browser", 9000, 6000)};
  form.Show();
  browser.Navigate(
      support::CorePath(std::filesystem::path(support::kSourceFolder) / "assets/wait.htm"));
  auto* const view = widgets::ViewOf("form", "browser");
  EXPECT_TRUE(peer::RunUntil([&] {
    return widgets::AskPage(view, "document.readyState + !!document.querySelector('.bar')") ==
           "completetrue";
  }));
  return widgets::AskPage(view, "getComputedStyle(" + question);
}

TEST_F(Appearance, MovesNothingOnTheWaitPageForThoseWhoAskedForThat) {
  const std::string animation = "document.querySelector('.bar')).animationName";
  EXPECT_EQ(WaitPageAnswers(animation), "speak");
  const Setting still("gtk-enable-animations", FALSE);
  EXPECT_EQ(WaitPageAnswers(animation), "breathe");
}

TEST_F(Appearance, ShowsADarkWaitPageOnADarkDesktop) {
  const std::string ground = "document.body).backgroundColor";
  EXPECT_EQ(WaitPageAnswers(ground), "rgb(255, 255, 255)");
  const Setting dark("gtk-application-prefer-dark-theme", TRUE);
  EXPECT_EQ(WaitPageAnswers(ground), "rgb(22, 32, 44)");
}

}  // namespace
