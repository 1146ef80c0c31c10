// See surroundings.h.
//
// SPDX-License-Identifier: MIT
#include "tests/bench/surroundings.h"

#include <array>
#include <cstdio>
#include <cstdlib>
#include <random>
#include <stdexcept>
#include <string_view>

#include "i18n/modI18N2.h"
#include "i18n/state.h"
#include "tests/support/temporary_folder.h"

namespace bench {
namespace {

constexpr std::array<std::string_view, 38> kLanguages = {
    "Hungarian",
    "Swedish",
    "Vietnamese",
    "English (UK)",
    "Ukrainian",
    "Greek",
    "Finnish",
    "Polish",
    "Chinese (Mandarin)",
    "French (France)",
    "Dutch",
    "English (US)",
    "Portuguese (Brazil)",
    "Norwegian",
    "Italian",
    "Spanish (Spain)",
    "English (India)",
    "Hindi",
    "Dutch (Belgium)",
    "Arabic",
    "Spanish (Mexico)",
    "Bulgarian",
    "Catalan",
    "Czech",
    "Danish",
    "English (Australia)",
    "English (South Africa)",
    "French (Belgium)",
    "French (Canada)",
    "German",
    "Hebrew",
    "Japanese",
    "Korean",
    "Portuguese (Portugal)",
    "Romanian",
    "Russian",
    "Thai",
    "Turkish",
};
constexpr std::array<std::string_view, 16> kBeginnings = {
    "Al", "Bren", "Cor", "Da", "El",      "Fe", "Gau", "Hol",
    "In", "Jo",   "Li",  "Ma", "\u00d6j", "Ru", "Se",  "Zo"};
constexpr std::array<std::string_view, 16> kMiddles = {"be", "ca", "d\u00e9", "fi",     "gri", "ho",
                                                       "ka", "li", "mo",      "na",     "pa",  "ri",
                                                       "se", "to", "va",      "\u0142u"};
constexpr std::array<std::string_view, 16> kEnds = {
    "bert", "dell",  "dina", "gen", "jana", "l\u00e9a", "lotta", "mira",
    "nik",  "phine", "ra",   "rik", "sio",  "ta",       "vind",  "wen"};
constexpr std::array<std::string_view, 3> kMakers = {"Vocalizer Expressive ", "Vocalizer ",
                                                     "RealSpeak "};
constexpr int kVoicesToAnother = 20;
constexpr int kFirstId = 1001;

template <class Table>
std::string_view Pick(const Table& table, unsigned number) {
  return table.at(number % table.size());
}

// Numbers scattered over 32 bits, so that neighbours in the catalogue are none in the order of
// names; each number once.
unsigned Scattered(int voice) { return static_cast<unsigned>(voice) * 2654435761U; }

std::string PersonsName(unsigned scattered) {
  std::string name(Pick(kBeginnings, scattered >> 28));
  name += Pick(kMiddles, scattered >> 24);
  name += Pick(kMiddles, scattered >> 20);
  name += Pick(kMiddles, scattered >> 16);
  name += Pick(kMiddles, scattered >> 12);
  name += Pick(kEnds, scattered >> 8);
  return name;
}

std::string ProductCode(int voice) {
  std::array<char, 64> code{};
  const unsigned scattered = Scattered(voice);
  std::snprintf(code.data(), code.size(), "%08X-%04X-4%03X-A%03X-%012X", scattered, scattered >> 16,
                scattered & 0xFFF, (scattered >> 8) & 0xFFF, static_cast<unsigned>(voice));
  return code.data();
}

std::string Product(int voice, std::string_view type) {
  const unsigned scattered = Scattered(voice);
  const std::string id = std::to_string(kFirstId + voice);
  const std::string person = PersonsName(scattered);
  const std::string code = ProductCode(voice);
  std::string text = "  <product>\n    <id>" + id + "</id>\n    <producttype>";
  text.append(type).append("</producttype>\n    <name>");
  text.append(Pick(kMakers, scattered >> 4)).append(person).append(" Voice</name>\n    <language>");
  text.append(Pick(kLanguages, static_cast<unsigned>(voice))).append("</language>\n    <size>");
  text += std::to_string(20'000'000 + scattered % 90'000'000);
  // With and without braces, as in life.
  text += "</size>\n    <productcode>" + (voice % 3 == 0 ? code : "{" + code + "}");
  text += "</productcode>\n    <link>https://download.velorsoftware.example/downloads/voice-" + id +
          ".msi</link>\n    <version>6." + std::to_string(scattered % 4) + "." +
          std::to_string(scattered % 7) + "</version>\n  </product>\n";
  return text;
}

// {12345678-9ABC-DEF0-1122-334455667788} as the registry has it; platform/linux says how.
std::string PackedCode(const std::string& code) {
  std::string packed;
  constexpr std::array<std::array<std::size_t, 2>, 11> kGroups = {{{0, 8},
                                                                   {9, 4},
                                                                   {14, 4},
                                                                   {19, 2},
                                                                   {21, 2},
                                                                   {24, 2},
                                                                   {26, 2},
                                                                   {28, 2},
                                                                   {30, 2},
                                                                   {32, 2},
                                                                   {34, 2}}};
  for (const auto& [start, length] : kGroups) {
    const std::string group = code.substr(start, length);
    packed.append(group.rbegin(), group.rend());
  }
  return packed;
}

std::string Registry(int voices) {
  std::string text =
      "WINE REGISTRY Version 2\n;; All keys relative to \\\\Machine\n\n#arch=win64\n";
  for (int voice = 0; voice < voices; voice += 2) {
    const std::string packed = PackedCode(ProductCode(voice));
    text += "\n[Software\\\\Classes\\\\Installer\\\\Products\\\\" + packed + "] 1700000000\n";
    text +=
        "\n[Software\\\\Microsoft\\\\Windows\\\\CurrentVersion\\\\Installer\\\\UserData\\\\"
        "S-1-5-18\\\\Products\\\\" +
        packed + "\\\\InstallProperties] 1700000000\n\"DisplayName\"=\"A voice\"\n" +
        "\"DisplayVersion\"=\"6.1.0\"\n\"Publisher\"=\"Velor Software\"\n";
  }
  return text;
}

constexpr const char* kSettings =
    "<settings><contents>"
    "<item><key>Speech.Voice1</key><content language='en-gb'>English (UK) Daniel</content></item>"
    "<item><key>Speech.Voice2</key><content language='en-gb'>VW Serena - Velor</content></item>"
    "</contents></settings>";

}  // namespace

std::string Catalogue(int voices) {
  std::string text = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<products>\n";
  for (int voice = 0; voice < voices; ++voice) {
    text += Product(voice, "Windows Voices");
    if (voice % kVoicesToAnother == 0) text += Product(voices + voice, "Mac Voices");
  }
  return text + "</products>\n";
}

Prefix::Prefix() {
  const std::filesystem::path memory = "/dev/shm";
  mPath = std::filesystem::is_directory(memory) ? memory : std::filesystem::temp_directory_path();
  mPath /= "velor-bench-" + std::to_string(std::random_device()());
  std::filesystem::create_directories(mPath / "drive_c");
  setenv("WINEPREFIX", mPath.c_str(), 1);
}

Prefix::~Prefix() {
  std::error_code ignored;
  std::filesystem::remove_all(mPath, ignored);
}

std::unique_ptr<platform::WindowsInstaller> Prefix::Installer(int voices, bool half) const {
  support::WriteBytes(mPath / "system.reg", Registry(half ? voices : 0));
  return std::make_unique<platform::WindowsInstaller>();
}

void LoadLanguages() {
  modI18N2::State& state = modI18N2::TheState();
  state = {};
  modI18N2::InitI18N("VelorVoiceSetup.Language.xml");
  if (!state.languageList || !state.applicationLanguage) {
    throw std::runtime_error("the language files are not beside this program");
  }
  state.productSettings = std::make_unique<platform::XmlDocument>();
  state.productSettings->LoadXml(kSettings);
}

}  // namespace bench
