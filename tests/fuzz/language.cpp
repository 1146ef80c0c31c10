// Language list, language file and settings of Parvix, up to the text for a key. The input:
//
//     de                  the first configured language
//     sv                  the second
//     Install             the key
//     s2                  what is asked for it, and how: see Asked below
//                         an empty line parts the documents
//     de|en||0            languages: id, fallback, direction, charset
//     en
//
//     Install|de|Installieren|en|Install      texts: key, then languages with their contents
//
//     Speech.Voice1|de|Anna                   settings, likewise
//
// Each of the three documents may also stand there as it is.
//
// SPDX-License-Identifier: MIT
#include <algorithm>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "core/text.h"
#include "i18n/modI18N2.h"
#include "i18n/state.h"
#include "tests/fuzz/target.h"
#include "tests/fuzz/xml_text.h"

namespace {

using fuzz::Clean;
using fuzz::Escaped;
using fuzz::Require;
using modI18N2::LanguageChain;
using modI18N2::TheState;

struct Language {
  std::string id;
  std::string fallback;
  std::string direction;
  std::string charset;
};

struct Content {
  std::string language;
  std::string text;
};

struct Item {
  std::string key;
  std::vector<Content> contents;
};

std::string TakeField(std::string_view& line) { return Clean(fuzz::TakeUpTo(line, "|")); }

std::vector<Language> LanguagesFrom(std::string_view lines) {
  std::vector<Language> languages;
  while (!lines.empty()) {
    std::string_view line = fuzz::TakeLine(lines);
    Language& language = languages.emplace_back();
    for (auto* field : {&language.id, &language.fallback, &language.direction, &language.charset}) {
      *field = TakeField(line);
    }
  }
  return languages;
}

std::vector<Item> ItemsFrom(std::string_view lines) {
  std::vector<Item> items;
  while (!lines.empty()) {
    std::string_view line = fuzz::TakeLine(lines);
    Item& item = items.emplace_back(Item{TakeField(line), {}});
    while (!line.empty()) {
      Content& content = item.contents.emplace_back();
      content.language = TakeField(line);
      content.text = TakeField(line);
    }
  }
  return items;
}

std::string DocumentOf(const std::vector<Language>& languages) {
  std::string text = "<languages>";
  for (const Language& language : languages) {
    text += "<language id=\"" + Escaped(language.id) + "\" fallback=\"" +
            Escaped(language.fallback) + "\" direction=\"" + Escaped(language.direction) +
            "\" charset=\"" + Escaped(language.charset) + "\"/>";
  }
  return text + "</languages>";
}

std::string DocumentOf(const std::vector<Item>& items) {
  std::string text = "<texts><contents>";
  for (const Item& item : items) {
    text += "<item><key>" + Escaped(item.key) + "</key>";
    for (const Content& content : item.contents) {
      text += "<content language=\"" + Escaped(content.language) + "\">" + Escaped(content.text) +
              "</content>";
    }
    text += "</item>";
  }
  return text + "</contents></texts>";
}

/// What there is to be asked; known only where no document stands in the input as it is.
struct Model {
  bool isKnown = true;
  std::vector<Language> languages;
  std::vector<Item> texts;
  std::vector<Item> settings;

  /// The fallback of the first language with the id; empty where there is none.
  std::string FallbackOf(const std::string& id) const {
    const auto found = std::ranges::find(languages, id, &Language::id);
    return found == languages.end() ? "" : found->fallback;
  }

  LanguageChain ChainOf(const std::string& language) const {
    LanguageChain chain{language, FallbackOf(language), ""};
    if (!chain.fallback.empty()) chain.secondFallback = FallbackOf(chain.fallback);
    return chain;
  }
};

/// What an input asks. Its fourth line may begin with `s` for a text of the settings, `v` for a
/// setting of both languages, `a` for the appearance of the first, and otherwise asks for a text.
/// Then come `p` for a padded text, `2` for one in the second language, and `l` for documents that
/// were loaded before the languages were configured. One question an input: each of them is asked
/// often enough.
struct Asked {
  std::string first;
  std::string second;
  std::string key;
  std::string how;

  bool FromSettings() const { return how.starts_with('s'); }
  bool ForSettings() const { return how.starts_with('v'); }
  bool ForAppearance() const { return how.starts_with('a'); }
  bool Padded() const { return Has('p'); }
  bool InSecondLanguage() const { return Has('2'); }
  bool LoadedBefore() const { return Has('l'); }

  /// Whether all that becomes part of a query can stand in one. What cannot finds nothing.
  bool IsPlain(const Model& model) const {
    const auto isPlain = [](const std::string& text) {
      return text.find_first_of("'\"") == std::string::npos && Clean(text) == text;
    };
    return isPlain(first) && isPlain(second) && isPlain(key) &&
           std::ranges::all_of(model.languages,
                               [&](const Language& one) { return isPlain(one.fallback); });
  }

 private:
  bool Has(char letter) const { return how.find(letter) != std::string::npos; }
};

std::unique_ptr<platform::XmlDocument> Loaded(const std::string& text) {
  auto document = std::make_unique<platform::XmlDocument>();
  document->LoadXml(text);
  if (document->ParseErrorCode() != 0) document.reset();
  return document;
}

/// The document of a part of the input, which it takes; `parsed` keeps what it is made of.
template <class Parse, class Parsed>
std::string TakeDocument(std::string_view& input, Model& model, Parse parse, Parsed& parsed) {
  const std::string_view part = fuzz::TakeUpTo(input, "\n\n");
  if (fuzz::IsDocument(part)) {
    model.isKnown = false;
    return std::string(part);
  }
  parsed = parse(part);
  return DocumentOf(parsed);
}

/// A program that has just been started and has loaded its documents, as Initialise and InitI18N
/// do.
Model Start(const Asked& asked, std::string_view input) {
  Model model;
  auto& state = TheState();
  state = {};
  state.initialised = true;
  state.configuredLanguages = {asked.first, asked.second};
  state.configuredLanguageCount = asked.second.empty() ? 1 : 2;
  if (!asked.LoadedBefore()) modI18N2::ResolveLanguagePair(asked.first, asked.second);
  state.languageList = Loaded(TakeDocument(input, model, LanguagesFrom, model.languages));
  state.applicationLanguage = Loaded(TakeDocument(input, model, ItemsFrom, model.texts));
  if (asked.FromSettings() || asked.ForSettings()) {
    state.productSettings = Loaded(TakeDocument(input, model, ItemsFrom, model.settings));
  }
  if (asked.LoadedBefore()) modI18N2::ResolveLanguagePair(asked.first, asked.second);
  modI18N2::SetLanguage(asked.first);
  // What is made of clean text is a document.
  Require(!model.isKnown || (state.languageList && state.applicationLanguage));
  return model;
}

bool Equal(const LanguageChain& left, const LanguageChain& right) {
  return left.language == right.language && left.fallback == right.fallback &&
         left.secondFallback == right.secondFallback;
}

/// The rule of the lookup: a content alone is taken; of several the first of the language itself,
/// else the last of its fallback, else the first of the second fallback.
std::optional<std::string> ExpectedText(const std::vector<Item>& items, const std::string& key,
                                        const LanguageChain& chain) {
  std::vector<Content> found;
  for (const Item& item : items) {
    if (item.key != key) continue;
    std::ranges::copy_if(item.contents, std::back_inserter(found), [&](const Content& content) {
      return content.language == chain.language || content.language == chain.fallback ||
             content.language == chain.secondFallback || content.language == "en" ||
             content.language == "en-gb";
    });
  }
  if (found.size() == 1) return found.front().text;
  const auto own = std::ranges::find(found, chain.language, &Content::language);
  if (own != found.end()) return own->text;
  const auto fallback = std::find_if(found.rbegin(), found.rend(), [&](const Content& content) {
    return content.language == chain.fallback;
  });
  if (fallback != found.rend()) return fallback->text;
  const auto second = std::ranges::find(found, chain.secondFallback, &Content::language);
  return second == found.end() ? std::nullopt : std::optional(second->text);
}

/// A setting is looked for in the first item of the key alone, and in no other language; from an
/// empty fallback on there are none.
std::string ExpectedSetting(const std::vector<Item>& items, const std::string& key,
                            const LanguageChain& chain) {
  const auto item = std::ranges::find(items, key, &Item::key);
  if (item == items.end()) return "";
  std::vector<std::string> languages = {chain.language};
  if (!chain.fallback.empty()) languages.push_back(chain.fallback);
  if (!chain.fallback.empty() && !chain.secondFallback.empty()) {
    languages.push_back(chain.secondFallback);
  }
  for (const std::string& language : languages) {
    const auto content = std::ranges::find(item->contents, language, &Content::language);
    if (content == item->contents.end()) continue;
    return std::string(core::Trim(content->text, core::kXmlBlanks));
  }
  return "";
}

std::string ExpectedAnswer(const Asked& asked, const Model& model) {
  const bool padded = asked.Padded();
  const auto& items = asked.FromSettings() ? model.settings : model.texts;
  const auto text =
      asked.key.empty()
          ? std::nullopt
          : ExpectedText(items, asked.key,
                         model.ChainOf(asked.InSecondLanguage() ? asked.second : asked.first));
  if (asked.key.empty()) return "";
  if (!text) return padded ? "" : asked.FromSettings() ? "absent" : asked.key;
  const std::string_view trimmed = core::Trim(*text, core::kXmlBlanks);
  if (!padded || trimmed.empty()) return std::string(trimmed);
  return " " + std::string(trimmed) + " ";
}

/// Languages are resolved in three steps, whatever circle their fallbacks make.
void CheckChain(const Asked& asked, const Model& model) {
  const LanguageChain& current = TheState().current;
  if (!TheState().languageList) {
    Require(Equal(current, LanguageChain()));
  } else {
    Require(current.language == asked.first);
    if (model.isKnown && asked.IsPlain(model)) Require(Equal(current, model.ChainOf(asked.first)));
  }
}

void CheckText(const Asked& asked, const Model& model) {
  const LanguageChain before = TheState().current;
  const bool padded = asked.Padded();
  const bool settings = asked.FromSettings();
  const std::string text =
      modI18N2::GetText(asked.key, padded, settings, "absent", asked.InSecondLanguage());
  Require(Equal(TheState().current, before));

  if (asked.key.empty()) Require(text.empty());
  if (!settings && !TheState().applicationLanguage) Require(text.empty());
  if (padded && !text.empty()) {
    Require(text.size() > 2 && text.starts_with(' ') && text.ends_with(' '));
  }
  if (model.isKnown && asked.IsPlain(model)) Require(text == ExpectedAnswer(asked, model));
}

void CheckSettings(const Asked& asked, const Model& model) {
  const std::string first = modI18N2::GetLanguageSetting(asked.key, 1, "");
  const std::string second = modI18N2::GetLanguageSetting(asked.key, 2, "");
  if (!TheState().productSettings) Require(first.empty() && second.empty());
  if (!model.isKnown || !asked.IsPlain(model)) return;
  LanguageChain one{asked.first, "", ""};
  LanguageChain two{asked.second, "", ""};
  if (asked.LoadedBefore()) {
    one = model.ChainOf(asked.first);
    two.fallback = model.FallbackOf(asked.second);
    // As the pair is resolved: by the first language's fallback.
    if (!one.fallback.empty()) two.secondFallback = model.FallbackOf(two.fallback);
  }
  Require(first == ExpectedSetting(model.settings, asked.key, one));
  Require(second == ExpectedSetting(model.settings, asked.key, two));
}

/// Font, character set and direction are those of the first language of the list that is in the
/// chain.
void CheckAppearance(const Asked& asked, const Model& model) {
  const std::string font = modI18N2::GetLanguageFont();
  Require(!font.empty());
  const bool rightToLeft = modI18N2::IsRightToLeft();
  modI18N2::GetLanguageCharset();
  if (!model.isKnown || !asked.IsPlain(model)) return;
  const LanguageChain& chain = TheState().current;
  const auto language = std::ranges::find_if(model.languages, [&](const Language& one) {
    return one.id == chain.language || (!chain.fallback.empty() && one.id == chain.fallback) ||
           (!chain.secondFallback.empty() && one.id == chain.secondFallback);
  });
  Require(rightToLeft == (language != model.languages.end() && language->direction == "rtl"));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  std::string_view input = fuzz::Text(data, size);
  Asked asked;
  for (auto* line : {&asked.first, &asked.second, &asked.key, &asked.how}) {
    *line = fuzz::TakeLine(input);
  }
  fuzz::TakeLine(input);
  const Model model = Start(asked, input);
  CheckChain(asked, model);
  if (asked.ForSettings()) {
    CheckSettings(asked, model);
  } else if (asked.ForAppearance()) {
    CheckAppearance(asked, model);
  } else {
    CheckText(asked, model);
  }
  return 0;
}
