// How the current language looks: font face, character set, reading direction.
//
// SPDX-License-Identifier: MIT
#include "core/attempt.h"
#include "core/text.h"
#include "i18n/modI18N2.h"
#include "i18n/state.h"
#include "platform/system/system.h"

namespace modI18N2 {

using core::AttemptOr;

namespace {

/// The pseudo-language of testers: a face that nobody overlooks.
constexpr const char* kPseudoLanguage = "xx";

/// Empty when the language list, the element or the attribute is missing.
std::string LanguageAttribute(const std::string& name) {
  const platform::XmlNode language = FindLanguageNode();
  return language ? language.Attribute(name).value_or("") : "";
}

}  // namespace

bool IsVistaOrLater() {
  return AttemptOr(false, [] { return platform::OperatingSystemMajorVersion() >= 6; });
}

std::string GetLanguageFont() {
  EnsureInitialised();
  if (TheState().current.language == kPseudoLanguage) return "Comic Sans MS";
  const bool vista = IsVistaOrLater();
  const std::string font = LanguageAttribute(vista ? "vistaFont" : "font");
  if (!font.empty()) return font;
  return vista ? "Segoe UI" : "Tahoma";
}

std::int16_t GetLanguageCharset() {
  EnsureInitialised();
  if (TheState().current.language == kPseudoLanguage) return 0;
  return AttemptOr<std::int16_t>(0,
                                 [] { return core::Int16FromText(LanguageAttribute("charset")); });
}

bool IsRightToLeft() {
  EnsureInitialised();
  return LanguageAttribute("direction") == "rtl";
}

}  // namespace modI18N2
