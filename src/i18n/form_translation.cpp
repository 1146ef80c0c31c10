// Onto a window: captions, tool tips, font and direction of everything that is in it.
//
// A property that a kind of control lacks is skipped like any failing step, so that one walk serves
// every kind.
//
// SPDX-License-Identifier: MIT
#include <string_view>

#include "core/attempt.h"
#include "i18n/modI18N2.h"
#include "i18n/state.h"

namespace modI18N2 {

using core::Attempt;
using core::AttemptOr;
using platform::ContainerItem;
using platform::Control;
using platform::Font;
using platform::Form;

namespace {

// Which kinds of controls get what: a kind is on a list when the list contains "*" + kind + "*".
// The lists name kinds of the sibling products' windows too, which share them.
constexpr std::string_view kDirectionKinds =
    "*CommandButton*Label*UniLabel*TextBox*Frame*CheckBox*OptionButton*ListBox*";
constexpr std::string_view kCaptionKinds =
    "*Label*UniLabel*DUniLabel*OptionButton*Menu*CommandButton*Frame*CheckBox*ButtonPlus*FramePlus*"
    "SSTab*";
constexpr std::string_view kToolTipKinds =
    "*Label*OptionButton*CommandButton*Frame*CheckBox*DUniLabel*UniLabel*FramePlus*SSTab*TextBox*"
    "UniText*UniList*ComboBox*WebBrowser*ProgressBar*ButtonPlus*ListBox*";
constexpr std::string_view kFontKinds =
    "*Label*DUniLabel*UniLabel*ComboBox*TextBox*Frame*CommandButton*CheckBox*OptionButton*ListBox*"
    "TabStrip*StatusBar*TreeView*ListView*ImageCombo*DUniText*DUniList*DUniCombo*ButtonPlus*"
    "FramePlus*SSTab*";

bool IsOn(std::string_view list, const std::string& kind) {
  return list.find("*" + kind + "*") != std::string_view::npos;
}

std::string PaddedText(const std::string& key) { return GetText(key, true, false, "1", false); }

/// A tag replaces the names.
std::string BaseKey(const std::string& tag, const std::string& names) {
  return tag.empty() ? names : tag;
}

void TranslatePanel(const ContainerItem& panel, const std::string& container) {
  const auto base = BaseKey(panel.tag, container + "." + std::to_string(panel.index));
  Attempt([&] { panel.setToolTipText(PaddedText(base + ".ToolTipText")); });
}

void TranslateToolBarButton(const ContainerItem& button, const std::string& container) {
  const std::string& ownName = button.kind == "IButton" ? button.name : button.key;
  const auto base = BaseKey(button.tag, container + "." + ownName);
  Attempt([&] { button.setCaption(GetText(base + ".Caption")); });
  Attempt([&] { button.setToolTipText(GetText(base + ".ToolTipText")); });
}

void TranslateTab(const ContainerItem& tab, const std::string& container) {
  Attempt([&] { tab.setCaption(GetText(container + "." + tab.key + ".Caption")); });
}

void TranslateItems(const Control& control, const std::string& kind, const std::string& names) {
  const auto translate = kind == "StatusBar"  ? TranslatePanel
                         : kind == "Toolbar"  ? TranslateToolBarButton
                         : kind == "TabStrip" ? TranslateTab
                                              : nullptr;
  if (translate == nullptr) return;
  Attempt([&] {
    for (const ContainerItem& item : control.Items()) translate(item, names);
  });
}

void TranslateControl(Control& control, const std::string& formName, const Font& font,
                      bool rightToLeft) {
  const auto kind = control.Kind();
  const auto names = formName + "." + control.Name();
  if (IsOn(kDirectionKinds, kind)) Attempt([&] { control.SetRightToLeft(rightToLeft); });
  TranslateItems(control, kind, names);

  const auto base = BaseKey(AttemptOr(std::string(), [&] { return control.Tag(); }), names);
  if (IsOn(kCaptionKinds, kind)) {
    const auto key = base + ".Caption";
    const auto caption = GetText(key);
    // Without a text of its own a control keeps its designed caption.
    if (caption != key) Attempt([&] { control.SetCaption(caption); });
  }
  if (IsOn(kToolTipKinds, kind)) {
    Attempt([&] { control.SetToolTipText(PaddedText(base + ".ToolTipText")); });
  }
  if (IsOn(kFontKinds, kind)) Attempt([&] { control.SetFont(font); });
}

}  // namespace

void TranslateForm(Form& form, int) {
  EnsureInitialised();
  if (!TheState().applicationLanguage) return;

  const auto formName = form.Name();
  const Font font{GetLanguageFont(), GetLanguageCharset()};
  const bool rightToLeft = IsRightToLeft();
  Attempt([&] { form.SetCaption(GetText(formName + ".Caption")); });
  Attempt([&] { form.SetFont(font); });
  Attempt([&] { form.SetRightToLeft(rightToLeft); });

  auto controls = form.Controls();
  for (Control& control : controls) {
    Attempt([&] { TranslateControl(control, formName, font, rightToLeft); });
  }
  // Pictures last: controls whose fonts or directions changed would cover them.
  for (Control& control : controls) {
    Attempt([&] {
      if (control.Kind() == "Image") control.BringToFront();
    });
  }
}

}  // namespace modI18N2
