// Which language is current and which stand behind it: the configured languages, the documents, the
// chains of fallbacks.
//
// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cstddef>
#include <string_view>

#include "core/attempt.h"
#include "core/text.h"
#include "i18n/modI18N2.h"
#include "i18n/state.h"
#include "paths/modPath.h"
#include "platform/system/profile.h"
#include "platform/system/system.h"
#include "platform/window/event_loop.h"

namespace modI18N2 {

using core::Attempt;
using core::AttemptOr;
using platform::XmlDocument;
using platform::XmlNode;

namespace {

constexpr const char* kSection = "I18N";
constexpr std::uint32_t kCalledTooEarly = 0x80040AF1;
/// LOCALE_USER_DEFAULT: a designator, not a locale of its own.
constexpr std::int32_t kUserDefaultLocale = 1024;
constexpr std::int32_t kEnglishUnitedStates = 1033;

void ReadConfiguredLanguages() {
  State& state = TheState();
  state.configuredLanguageCount = 1;
  std::string first = modPath::ReadAppIni(kSection, "Language1", "");
  std::string second = modPath::ReadAppIni(kSection, "Language2", "");
  if (first.empty()) {
    const std::string config = modPath::GetParvixConfigPath();
    first = ReadIniValue(config, kSection, "Language1");
    second = ReadIniValue(config, kSection, "Language2");
    if (first.empty()) first = "en-gb";
  }
  state.configuredLanguages[0] = first;
  if (second.empty()) return;
  state.configuredLanguages[1] = second;
  state.configuredLanguageCount = 2;
}

/// The file is "I18N.ini", its section "LanguageIndex", its key "1": odd, but where Parvix has it.
std::int16_t ReadLanguageIndex() {
  const auto index =
      core::LeadingNumber(modPath::ReadSettingsIni("I18N", "LanguageIndex", "1", "1"));
  return std::clamp<std::int16_t>(index, 1, TheState().configuredLanguageCount);
}

std::unique_ptr<XmlDocument> StartLoading(const std::string& path) {
  auto document = std::make_unique<XmlDocument>();
  document->Load(path);
  while (!document->IsComplete()) PumpEvents();
  return document;
}

/// Null when there is no such document or it is malformed: both are done without.
std::unique_ptr<XmlDocument> LoadDocument(const std::string& path) {
  auto document = AttemptOr(std::unique_ptr<XmlDocument>(), [&] { return StartLoading(path); });
  if (document && document->ParseErrorCode() != 0) document.reset();
  return document;
}

/// The first `language` element that `condition` holds for; no node also without a list.
XmlNode FindLanguage(const std::string& condition) {
  const auto& list = TheState().languageList;
  if (!list) return {};
  return AttemptOr(XmlNode(), [&] {
    return list->DocumentNode().SelectSingleNode("languages/language[" + condition + "]");
  });
}

XmlNode FindLanguageById(const std::string& id) { return FindLanguage("@id='" + id + "'"); }

/// Empty when there is no such element or attribute.
std::string AttributeOf(const XmlNode& element, const std::string& name) {
  return element ? element.Attribute(name).value_or("") : "";
}

/// Adds the language to the current chain: records its mark and answers its fallback.
std::string FollowCurrent(const std::string& id) {
  const XmlNode language = FindLanguageById(id);
  if (language && language.Attribute("caseSensitive")) TheState().caseSensitive = true;
  return AttributeOf(language, "fallback");
}

}  // namespace

State& TheState() {
  static State state;
  return state;
}

std::string ReadIniValue(const std::string& file, const std::string& section,
                         const std::string& key) {
  constexpr std::size_t kBuffer = 255;
  return AttemptOr(std::string(),
                   [&] { return platform::ReadProfileString(file, section, key, "", kBuffer); });
}

void EnsureInitialised() {
  if (!TheState().initialised) Initialise();
}

void InitI18N(const std::string& languageFileName) {
  State& state = TheState();
  ReadConfiguredLanguages();
  state.applicationLanguageFileName = languageFileName;
  state.languageIndex = ReadLanguageIndex();
  // Before the first checked operation loads the list, so that only the languages themselves are
  // recorded. Loading earlier would let the default voices of a fallback language count.
  ResolveLanguagePair(state.configuredLanguages[0], state.configuredLanguages[1]);
  SetLanguage(state.configuredLanguages.at(static_cast<std::size_t>(state.languageIndex - 1)));
}

void Initialise() {
  State& state = TheState();
  state.initialised = true;
  const std::string folder = modPath::GetAppFolder();
  state.languageList = LoadDocument(folder + "\\Languages.xml");
  state.productSettings = LoadDocument(modPath::GetParvixEditionFolder() + "\\Settings.xml");
  if (state.applicationLanguageFileName.empty()) {
    state.applicationLanguageFileName = "Parvix.Language.xml";
    state.lastError =
        RaisedError{kCalledTooEarly, "Called something in modI18N2 before calling InitI18N.",
                    "modI18N2.Initialise()"};
  }
  state.applicationLanguage = LoadDocument(folder + "\\" + state.applicationLanguageFileName);
  if (state.languageList) DetectLocaleLanguage();
}

void SetLanguage(const std::string& language) {
  EnsureInitialised();
  State& state = TheState();
  if (!state.languageList) return;
  state.current.language = GetPrimaryLanguage();
  if (state.current.language.empty()) state.current.language = language;
  ResolveFallbacks();
}

void ResolveFallbacks() {
  EnsureInitialised();
  if (!TheState().languageList) return;
  LanguageChain& chain = TheState().current;
  chain.secondFallback.clear();
  chain.fallback = FollowCurrent(chain.language);
  if (!chain.fallback.empty()) chain.secondFallback = FollowCurrent(chain.fallback);
  if (!chain.secondFallback.empty()) FollowCurrent(chain.secondFallback);  // for its mark alone
}

void ResolveLanguagePair(const std::string& first, const std::string& second) {
  State& state = TheState();
  state.firstChain.language = first;
  state.secondChain.language = second;
  state.translateTargets = {first, second};
  if (!state.languageList) return;

  const auto targetOf = [](const XmlNode& language, const std::string& otherwise) {
    return language ? language.Attribute("translateTo").value_or(otherwise) : otherwise;
  };
  const auto fallbackOf = [](const std::string& id) {
    return AttributeOf(FindLanguageById(id), "fallback");
  };

  LanguageChain& one = state.firstChain;
  state.translateTargets[0] = targetOf(FindLanguageById(first), first);
  one.fallback = fallbackOf(first);
  one.secondFallback = one.fallback.empty() ? "" : fallbackOf(one.fallback);

  LanguageChain& two = state.secondChain;
  state.translateTargets[1] = targetOf(FindLanguageById(second), second);
  two.fallback = fallbackOf(second);
  // It is the first chain that is looked at: the second one's last link is only known when the
  // first language has a fallback. Kept, since Parvix resolves the pair alike.
  two.secondFallback = one.fallback.empty() ? "" : fallbackOf(two.fallback);
}

std::int32_t DetectLocaleLanguage() {
  EnsureInitialised();
  State& state = TheState();
  state.current.language = "en";
  std::int32_t locale = kEnglishUnitedStates;
  if (!AttemptOr(std::string(), [] { return platform::CountryName(); }).empty()) {
    // The designator is looked for, not the locale that it stands for; then its language part
    // alone, the low ten bits, which is 0.
    XmlNode language = FindLanguage("@localeID='" + std::to_string(kUserDefaultLocale) + "'");
    if (!language) {
      language = FindLanguage("@localeID='" + std::to_string(kUserDefaultLocale & 0x3FF) + "'");
    }
    if (language) {
      state.current.language = AttributeOf(language, "id");
      Attempt([&] { locale = core::Int32FromText(AttributeOf(language, "localeID")); });
    }
  }
  ResolveFallbacks();
  return locale;
}

std::string GetLanguage1() {
  EnsureInitialised();
  return TheState().configuredLanguages[0];
}

std::string GetLanguage2() {
  EnsureInitialised();
  return TheState().configuredLanguages[1];
}

std::string GetPrimaryLanguage() {
  EnsureInitialised();
  return TheState().firstChain.language;
}

XmlNode FindLanguageNode() {
  const LanguageChain& chain = TheState().current;
  std::string condition = "@id='" + chain.language + "'";
  for (const std::string& fallback : {chain.fallback, chain.secondFallback}) {
    if (!fallback.empty()) condition += " or @id='" + fallback + "'";
  }
  return FindLanguage(condition);
}

void PumpEvents() {
  EnsureInitialised();
  for (int times = 0; times < 100; ++times) Attempt([] { platform::ProcessPendingEvents(); });
}

}  // namespace modI18N2
