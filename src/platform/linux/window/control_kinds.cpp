// The kinds of control that the program's window has. Captions, fonts and the logo; the browser is
// in browser_control.cpp.
//
// SPDX-License-Identifier: MIT
#include <cmath>
#include <stdexcept>
#include <utility>
#include <vector>

#include "core/build_settings.h"
#include "platform/linux/signals.h"
#include "platform/linux/window/browser_control.h"
#include "platform/linux/window/native_control.h"
#include "platform/linux/window/speech.h"
#include "platform/linux/window/toolkit.h"

namespace platform {
namespace {

/// "&Install && go_on" becomes "_Install & go__on".
std::string MnemonicText(const std::string& caption) {
  std::string result;
  for (std::size_t i = 0; i < caption.size(); ++i) {
    if (caption[i] == '_') {
      result += "__";
    } else if (caption[i] != '&') {
      result += caption[i];
    } else if (caption.substr(i, 2) == "&&") {
      result += caption[i++];
    } else if (i + 1 < caption.size()) {
      result += '_';
    }
  }
  return result;
}

std::string SystemFontFamily() {
  gchar* setting = nullptr;
  g_object_get(gtk_settings_get_default(), "gtk-font-name", &setting, nullptr);
  const GMemory<gchar> name(setting);
  PangoFontDescription* font = pango_font_description_from_string(name ? name.get() : "Sans");
  const std::string family = TextOf(pango_font_description_get_family(font));
  pango_font_description_free(font);
  return family.empty() ? "Sans" : family;
}

/// Sets the face and leaves the system's size. The list ends with the system's own face, which is
/// taken where the first is not installed. The character set has no meaning here: every font is
/// asked by Unicode. `scale` makes the text smaller than the system's size.
void SetLabelFont(GtkLabel* label, const Font& font, double scale = 1) {
  const std::string families =
      font.name.empty() ? SystemFontFamily() : font.name + "," + SystemFontFamily();
  PangoAttrList* attributes = pango_attr_list_new();
  pango_attr_list_insert(attributes, pango_attr_family_new(families.c_str()));
  pango_attr_list_insert(attributes, pango_attr_scale_new(scale));
  gtk_label_set_attributes(label, attributes);
  pango_attr_list_unref(attributes);
}

void SetDirection(GtkWidget* widget, bool rightToLeft) {
  gtk_widget_set_direction(widget, rightToLeft ? GTK_TEXT_DIR_RTL : GTK_TEXT_DIR_LTR);
}

/// Lets a widget be exactly as large as the layout says, however narrow.
void AddStyle(GtkWidget* widget, const char* style) {
  const auto provider = GRef<GtkCssProvider>::Adopt(gtk_css_provider_new());
  gtk_css_provider_load_from_data(provider.Get(), style, -1, nullptr);
  gtk_style_context_add_provider(gtk_widget_get_style_context(widget),
                                 GTK_STYLE_PROVIDER(provider.Get()),
                                 GTK_STYLE_PROVIDER_PRIORITY_APPLICATION);
}

// Percents of the system's size.
constexpr int kSmallestText = 75;
constexpr int kTextStep = 5;
// Of the system's size as it usually is, 10 points. Where it is larger, there is more to take away.
constexpr double kSmallestPoints = 10.0 * kSmallestText / 100;

/// The size, in points, that the system wants texts in.
double SystemPoints(GtkWidget* widget) {
  const PangoFontDescription* const font =
      pango_context_get_font_description(gtk_widget_get_pango_context(widget));
  const double size = static_cast<double>(pango_font_description_get_size(font)) / PANGO_SCALE;
  constexpr int kTwipsPerPoint = 20;
  return pango_font_description_get_size_is_absolute(font) ? size * TwipsPerUnit() / kTwipsPerPoint
                                                           : size;
}

class CommandButton : public NativeControl {
 public:
  explicit CommandButton(const std::string& name)
      : NativeControl("CommandButton", name, gtk_button_new_with_mnemonic("")) {
    PrepareText();
    AddStyle(Widget(), "button { min-width: 0; min-height: 0; padding: 0 4px; }");
    mClicked = Connect<void()>(Widget(), "clicked", [this] {
      // A copy: the handler may end the form, and this control's handler with it.
      if (const auto handler = mHandler) handler();
    });
  }

  std::string Caption() const override { return mCaption; }
  void SetCaption(const std::string& caption) override {
    mCaption = caption;
    gtk_button_set_label(GTK_BUTTON(Widget()), MnemonicText(caption).c_str());
    PrepareText();
    FitText();
    if (mHasDirection) platform::SetDirection(GTK_WIDGET(Text()), mRightToLeft);
  }
  void SetFont(const Font& font) override {
    mFont = font;
    FitText();
  }
  void SetRightToLeft(bool rightToLeft) override {
    mRightToLeft = rightToLeft;
    mHasDirection = true;
    SetDirection(Widget(), rightToLeft);
    SetDirection(GTK_WIDGET(Text()), rightToLeft);
  }
  void OnClick(std::function<void()>&& handler) override { mHandler = std::move(handler); }
  void End() override {
    mHandler = nullptr;
    mClicked = {};
    mStyled = {};
    NativeControl::End();
  }

 private:
  // GTK makes a new label whenever the button's text changes.
  GtkLabel* Text() const { return GTK_LABEL(gtk_bin_get_child(GTK_BIN(Widget()))); }

  void PrepareText() {
    gtk_label_set_ellipsize(Text(), PANGO_ELLIPSIZE_END);
    mStyled = Connect<void()>(Text(), "style-updated", [this] { FitText(); });
  }

  /// The button keeps its size in every language, so a long word is written a little smaller; only
  /// one that would become hard to read is cut.
  void FitText() {
    // Step by step and measured each time, since letters have whole pixels.
    const double points = SystemPoints(Widget());
    for (int percents = 100;
         percents >= kSmallestText || points * percents / 100 >= kSmallestPoints;
         percents -= kTextStep) {
      SetLabelFont(Text(), mFont, percents / 100.0);
      int wanted = 0;
      gtk_widget_get_preferred_width(GTK_WIDGET(Text()), nullptr, &wanted);
      if (wanted <= Room()) return;
    }
  }

  /// What the edges of the button leave, in GTK's pixels.
  double Room() const {
    GtkStyleContext* const style = gtk_widget_get_style_context(Widget());
    GtkBorder padding, border;
    gtk_style_context_get_padding(style, GTK_STATE_FLAG_NORMAL, &padding);
    gtk_style_context_get_border(style, GTK_STATE_FLAG_NORMAL, &border);
    return std::floor(Where().width / TwipsPerUnit()) - padding.left - padding.right - border.left -
           border.right;
  }

  std::string mCaption;
  Font mFont;
  bool mRightToLeft = false;
  bool mHasDirection = false;
  std::function<void()> mHandler;
  SignalConnection mClicked;
  SignalConnection mStyled;
};

class Label : public NativeControl {
 public:
  explicit Label(const std::string& name) : NativeControl("Label", name, gtk_label_new(nullptr)) {
    gtk_label_set_xalign(Text(), 0);  // the leading edge, in either direction
    gtk_label_set_ellipsize(Text(), PANGO_ELLIPSIZE_END);
  }

  std::string Caption() const override { return mCaption; }
  void SetCaption(const std::string& caption) override {
    if (caption == mCaption) return;
    mCaption = caption;
    gtk_label_set_text(Text(), caption.c_str());
  }
  void SetFont(const Font& font) override { SetLabelFont(Text(), font); }
  void SetRightToLeft(bool rightToLeft) override { SetDirection(Widget(), rightToLeft); }
  void Speak(const std::string& text) override { mSpeech.Say(Widget(), text); }

 private:
  GtkLabel* Text() const { return GTK_LABEL(Widget()); }

  std::string mCaption;
  Speech mSpeech;
};

/// Shows the program's logo at the top of a column, as wide as the column.
class PictureBox : public NativeControl {
 public:
  explicit PictureBox(const std::string& name)
      : NativeControl("PictureBox", name, gtk_drawing_area_new()),
        // Without the picture the column is empty, which is no reason to fail.
        mLogo(GRef<GdkPixbuf>::Adopt(
            gdk_pixbuf_new_from_resource("/com/velorsoftware/VoiceSetup/logo.png", nullptr))) {
    AtkObject* accessible = gtk_widget_get_accessible(Widget());
    atk_object_set_role(accessible, ATK_ROLE_IMAGE);
    atk_object_set_name(accessible, std::string(core::kProductName).c_str());
    mDraw = Connect<gboolean(cairo_t*)>(Widget(), "draw", [this](cairo_t* picture) {
      Draw(picture);
      return TRUE;
    });
  }

  void End() override {
    mDraw = {};
    NativeControl::End();
  }

 private:
  void Draw(cairo_t* picture) const {
    cairo_set_source_rgb(picture, 0x1f / 255.0, 0x3a / 255.0, 0x5f / 255.0);
    cairo_paint(picture);
    if (!mLogo) return;
    const double scale = static_cast<double>(gtk_widget_get_allocated_width(Widget())) /
                         gdk_pixbuf_get_width(mLogo.Get());
    cairo_scale(picture, scale, scale);
    gdk_cairo_set_source_pixbuf(picture, mLogo.Get(), 0, 0);
    cairo_pattern_set_filter(cairo_get_source(picture), CAIRO_FILTER_BEST);
    cairo_paint(picture);
  }

  GRef<GdkPixbuf> mLogo;
  SignalConnection mDraw;
};

}  // namespace

std::shared_ptr<NativeControl> MakeControl(const std::string& kind, const std::string& name) {
  if (kind == "CommandButton") return std::make_shared<CommandButton>(name);
  if (kind == "Label") return std::make_shared<Label>(name);
  if (kind == "PictureBox") return std::make_shared<PictureBox>(name);
  if (kind == "WebBrowser") return std::make_shared<BrowserControl>(name);
  throw std::invalid_argument("no such kind of control: " + kind);
}

}  // namespace platform
