// Texts by their keys.
//
// SPDX-License-Identifier: MIT
#include <benchmark/benchmark.h>

#include <string>
#include <unordered_map>
#include <vector>

#include "i18n/modI18N2.h"
#include "i18n/state.h"
#include "tests/bench/measures.h"

namespace bench {
namespace {

using benchmark::State;

std::vector<std::string> Keys() {
  std::vector<std::string> keys;
  const auto root = modI18N2::TheState().applicationLanguage->DocumentElement();
  for (const auto& key : root.SelectNodes("contents/item/key")) keys.push_back(key.Text());
  return keys;
}

std::vector<std::string> Languages() {
  std::vector<std::string> ids;
  const auto document = modI18N2::TheState().languageList->DocumentNode();
  for (const auto& language : document.SelectNodes("languages/language")) {
    ids.push_back(language.Attribute("id").value_or(""));
  }
  return ids;
}

void Speak(const std::string& language) {
  modI18N2::TheState().current.language = language;
  modI18N2::ResolveFallbacks();
}

void CountLookups(State& state, std::size_t lookups) {
  state.counters["each"] = benchmark::Counter(
      static_cast<double>(lookups),
      benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

void GetText(State& state) {
  LoadLanguages();
  const auto keys = Keys();
  const auto languages = Languages();
  for (auto _ : state) {
    for (const auto& language : languages) {
      state.PauseTiming();
      Speak(language);
      state.ResumeTiming();
      for (const auto& key : keys) benchmark::DoNotOptimize(modI18N2::GetText(key));
    }
  }
  CountLookups(state, keys.size() * languages.size());
}

void HashLookup(State& state) {
  LoadLanguages();
  const auto keys = Keys();
  std::unordered_map<std::string, std::string> texts;
  for (const auto& key : keys) texts[key] = modI18N2::GetText(key);
  for (auto _ : state) {
    for (const auto& key : keys) benchmark::DoNotOptimize(texts.find(key));
  }
  CountLookups(state, keys.size());
}

// What TranslateForm asks for this window, then what page and status line show.
void StartupTexts(State& state) {
  LoadLanguages();
  for (auto _ : state) {
    benchmark::DoNotOptimize(modI18N2::GetLanguageFont());
    benchmark::DoNotOptimize(modI18N2::GetLanguageCharset());
    benchmark::DoNotOptimize(modI18N2::IsRightToLeft());
    benchmark::DoNotOptimize(modI18N2::GetText("frmSelect.Caption"));
    for (const std::string key : {"frmSelect.lblStatus.Caption", "frmSelect.cmdInstall.Caption"}) {
      benchmark::DoNotOptimize(modI18N2::GetText(key));
    }
    for (const std::string key :
         {"frmSelect.webOptions.ToolTipText", "frmSelect.lblStatus.ToolTipText",
          "frmSelect.cmdInstall.ToolTipText"}) {
      benchmark::DoNotOptimize(modI18N2::GetText(key, true, false, "1", false));
    }
    for (const std::string key : {"Available Voices", "Default voices info", "Already Installed"}) {
      benchmark::DoNotOptimize(modI18N2::GetText(key));
    }
    benchmark::DoNotOptimize(modI18N2::GetLanguageSetting("Speech.Voice1", 1, ""));
    benchmark::DoNotOptimize(modI18N2::GetLanguageSetting("Speech.Voice2", 2, ""));
    benchmark::DoNotOptimize(modI18N2::GetText("voices"));
  }
}

void ReadLanguages(State& state) {
  for (auto _ : state) {
    state.PauseTiming();
    modI18N2::TheState() = {};
    state.ResumeTiming();
    LoadLanguages();
  }
}

}  // namespace

void RegisterTexts() {
  using benchmark::kMicrosecond;
  benchmark::RegisterBenchmark("GetText", GetText)->Unit(kMicrosecond);
  benchmark::RegisterBenchmark("HashLookup", HashLookup)->Unit(kMicrosecond);
  benchmark::RegisterBenchmark("StartupTexts", StartupTexts)->Unit(kMicrosecond);
  benchmark::RegisterBenchmark("LoadLanguages", ReadLanguages)->Unit(kMicrosecond);
}

}  // namespace bench
