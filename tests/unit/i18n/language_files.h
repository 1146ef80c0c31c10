// The language files of a test, written where the program looks for them. Contents stand in them as
// they are given: a test that wants "&" writes "&amp;".
//
// SPDX-License-Identifier: MIT
#pragma once

#include <initializer_list>
#include <string>
#include <string_view>
#include <utility>

#include "i18n/modI18N2.h"
#include "i18n/state.h"
#include "tests/unit/paths/fresh_program.h"

namespace unit {

/// An item with its contents, each a language and a text.
inline std::string Item(
    const std::string& key,
    std::initializer_list<std::pair<std::string_view, std::string_view>> contents) {
  std::string item = "<item><key>" + key + "</key>";
  for (const auto& [language, text] : contents) {
    item.append("<content language=\"").append(language).append("\">");
    item.append(text).append("</content>");
  }
  return item + "</item>";
}

/// A program that has just been started, with localisation untouched.
class Localised : public FreshProgram {
 protected:
  Localised() { modI18N2::TheState() = {}; }
  ~Localised() override { modI18N2::TheState() = {}; }

  static constexpr const char* kTextsFile = "VelorVoiceSetup.Language.xml";

  static void WriteProgramFile(const std::string& name, std::string_view bytes) {
    fake::TheWorld().WriteFile(ProgramFolder() + "\\" + name, bytes);
  }

  static void WriteLanguages(const std::string& elements) {
    WriteProgramFile("Languages.xml", "<languages>" + elements + "</languages>");
  }

  static std::string ItemsDocument(const std::string& items) {
    return "<texts><contents>" + items + "</contents></texts>";
  }

  static void WriteTexts(const std::string& items) {
    WriteProgramFile(kTextsFile, ItemsDocument(items));
  }

  /// The settings of Parvix, of which no edition is installed.
  static void WriteSettings(const std::string& items) {
    fake::TheWorld().WriteFile(ParvixBase() + "\\Settings.xml", ItemsDocument(items));
  }

  static std::string LanguagesIni(const std::string& first, const std::string& second = "") {
    return "[I18N]\r\nLanguage1=" + first + "\r\nLanguage2=" + second + "\r\n";
  }

  /// The program's own ini names the languages.
  static void Configure(const std::string& first, const std::string& second = "") {
    WriteOwnIni(LanguagesIni(first, second));
  }

  /// Parvix names the languages.
  static void ConfigureParvix(const std::string& first, const std::string& second = "") {
    fake::TheWorld().WriteFile(PortableSettingsFolder() + "\\config.ini",
                               LanguagesIni(first, second));
  }

  static void Start() { modI18N2::InitI18N(kTextsFile); }

  /// Starts with these languages configured; the files are to be written before.
  static void StartIn(const std::string& first, const std::string& second = "") {
    Configure(first, second);
    Start();
  }
};

}  // namespace unit
