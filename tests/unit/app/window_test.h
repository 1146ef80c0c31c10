// What the tests of this module begin with: the program's files in a fresh world, short ways to
// write a catalogue, and a person who starts the program, waits, ticks and reads.
//
// SPDX-License-Identifier: MIT
#pragma once

#include <gtest/gtest.h>

#include <regex>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "app/modMain.h"
#include "i18n/state.h"
#include "paths/modPath.h"
#include "tests/fake_platform/fake.h"

inline constexpr const char* kCatalogueAddress =
    "https://download.velorsoftware.example/downloads/voices.xml";

/// One product of a catalogue.
inline std::string Product(const std::string& id, const std::string& name,
                           const std::string& size = "75000000") {
  return "<product><producttype>Windows Voices</producttype><name>" + name +
         "</name><language>English (UK)</language><id>" + id + "</id><size>" + size +
         "</size><productcode>" + id + "</productcode></product>";
}

inline std::string Catalogue(const std::string& products) {
  return "<catalogue>" + products + "</catalogue>";
}

/// Two voices, of 75 and 60 MB, whose boxes are "check12" and "check40".
inline std::string TwoVoices() {
  return Catalogue(Product("12", "Anna") + Product("40", "Berta", "60000000"));
}

/// What stands in the language file for a key. Every wording differs from its key, so that a text
/// that was not looked up is seen.
inline std::string TextItem(const std::string& key, const std::string& english,
                            const std::string& german) {
  return "<item><key>" + key + "</key><content language='en'>" + english +
         "</content><content language='de'>" + german + "</content></item>";
}

class WindowTest : public testing::Test {
 protected:
  WindowTest() {
    fake::Reset();
    modI18N2::TheState() = {};
    modPath::gSettingsPath.clear();
    modPath::gUserSettingsPath.clear();
    modPath::gCommonPath.clear();
    modPath::gPortable = false;
    modMain::gFallbackCommand.clear();
    WriteLanguages();
    WriteTexts();
    World().WriteFile(CompanyFolder() + "\\rights.txt", "");  // installed with the program
  }

  /// A window lives until it was told its end, so every test brings its own there.
  ~WindowTest() override {
    World().whileMessageIsShown = nullptr;
    fake::HandleEvents();
    while (HasWindow()) {
      fake::TheForm().Close();
      fake::HandleEvents();
    }
  }

  static fake::World& World() { return fake::TheWorld(); }
  static bool HasWindow() { return !World().loadedForms.empty(); }
  static fake::Control& Button() { return fake::ControlNamed("cmdInstall"); }
  static fake::Control& Status() { return fake::ControlNamed("lblStatus"); }
  static fake::Browser& Browser() { return fake::ControlNamed("webOptions").browser; }

  static std::string InProgramFolder(const std::string& name) {
    return World().programFolder + "\\" + name;
  }
  static std::string CompanyFolder() { return World().specialFolders.at(35) + "\\Velor Software"; }
  static std::string QueuePath() { return CompanyFolder() + "\\queue.xml"; }
  static std::string ProductsPath() { return CompanyFolder() + "\\products.xml"; }
  static std::string PagePath() {
    return World().specialFolders.at(26) + "\\Velor Software\\VelorVoiceSetup\\index.htm";
  }

  static void Speak(const std::string& language) {
    World().WriteFile(InProgramFolder("VelorVoiceSetup.ini"),
                      "[I18N]\r\nLanguage1=" + language + "\r\n");
  }

  static void WriteQueue(const std::string& xml) { World().WriteFile(QueuePath(), xml); }

  /// The voices that Parvix speaks with: the first in English, the second in German, which is made
  /// the second configured language.
  static void SetDefaultVoices(const std::string& first, const std::string& second) {
    World().WriteFile(InProgramFolder("VelorVoiceSetup.ini"),
                      "[I18N]\r\nLanguage1=en\r\nLanguage2=de\r\n");
    const std::string folder =
        World().programFolder.substr(0, World().programFolder.rfind('\\')) + "\\Parvix Plus";
    World().WriteFile(folder + "\\installed.ini", "");
    World().WriteFile(folder + "\\Settings.xml",
                      "<settings><contents>" + TextItem("Speech.Voice1", first, "no voice") +
                          TextItem("Speech.Voice2", "no voice", second) + "</contents></settings>");
  }

  static void Install(const std::string& id) {
    World().installedProducts->insert({"{" + id + "}", "1.0"});
  }

  /// The program is started and handles what is waiting; the catalogue is still under way.
  static void Start(const std::string& arguments = "") {
    World().arguments = arguments;
    modMain::Main();
    fake::HandleEvents();
  }

  static void CatalogueArrives(const std::string& catalogue) {
    fake::FinishLoad(kCatalogueAddress, catalogue);
    fake::HandleEvents();
  }

  static void CatalogueFails() {
    fake::FailLoad(kCatalogueAddress);
    fake::HandleEvents();
  }

  static bool IsPageBuilt() { return World().HasFile(PagePath()); }

  /// The page as it was written; throws where it is not plain ASCII in UTF-16.
  static std::string Page() {
    const std::string bytes = World().ReadFile(PagePath());
    if (!bytes.starts_with("\xFF\xFE")) throw std::runtime_error("no byte-order mark");
    std::string text;
    for (std::size_t i = 2; i < bytes.size(); i += 2) {
      if (bytes.at(i + 1) != '\0') throw std::runtime_error("not ASCII");
      text += bytes[i];
    }
    return text;
  }

  /// The browser is done with the page: its boxes are the ones that stand in the file.
  static void PageIsShown() {
    static const std::regex box("<input type='checkbox' id='([^']*)'([^>]*)>");
    const std::string page = Page();
    std::vector<platform::InputState> boxes;
    for (std::sregex_iterator at(page.begin(), page.end(), box), end; at != end; ++at) {
      const std::string attributes = (*at)[2];
      const auto has = [&](const char* name) { return attributes.find(name) != std::string::npos; };
      boxes.push_back({(*at)[1], has("checked"), has("disabled")});
    }
    Browser().inputs = std::move(boxes);
  }

  /// The voices page is there, nothing has been ticked and no time has passed yet.
  static void ShowVoices(const std::string& catalogue) {
    Start();
    CatalogueArrives(catalogue);
    PageIsShown();
  }

  static void Tick(const std::string& id, bool checked = true) {
    Browser().Tick("check" + id, checked);
  }

  /// Long enough for the ticks to be seen.
  static void Wait() { fake::Pass(500); }

  static void PressInstall() {
    Button().Click();
    fake::HandleEvents();
  }

  static void CloseWindow() {
    fake::TheForm().Close();
    fake::HandleEvents();
  }

  static std::vector<std::string> MessageTexts() {
    std::vector<std::string> texts;
    for (const auto& message : World().messages) texts.push_back(message.text);
    return texts;
  }

  static void WriteLanguages() {
    World().WriteFile(InProgramFolder("Languages.xml"),
                      "<languages>"
                      "<language id='ar' fallback='en' direction='rtl'/>"
                      "<language id='de' fallback='en'/>"
                      "<language id='sv' fallback='en'/>"
                      "<language id='en-gb' fallback='en'/>"
                      "<language id='en'/>"
                      "</languages>");
    Speak("en");
  }

  static void WriteTexts() {
    World().WriteFile(
        InProgramFolder("VelorVoiceSetup.Language.xml"),
        "<texts><contents>" + TextItem("frmSelect.Caption", "Get voices", "Stimmen holen") +
            TextItem("frmSelect.cmdInstall.Caption", "Get them", "Holen") +
            TextItem("Available Voices", "Voices to get", "Verf\u00fcgbare Stimmen \U0001F50A") +
            TextItem("Default voices info", "These speak already.", "Diese sprechen schon.") +
            TextItem("Already Installed", "On this computer", "Auf diesem Rechner") +
            TextItem("voice,", "voice chosen,", "Stimme,") +
            TextItem("voices,", "voices chosen,", "Stimmen,") +
            TextItem("Failed to access Velor Software website. "
                     "Please check your Internet connection.",
                     kFailure, "Kein Weg zum Server.") +
            TextItem("Get more voices prompt", kPrompt, "Bis bald.") + "</contents></texts>");
  }

  static constexpr const char* kFailure = "No way to the server.";
  static constexpr const char* kPrompt = "Come back for more.";
};
