// Which text: the content of an item in the best language that it has one for.
//
// SPDX-License-Identifier: MIT
#include <algorithm>
#include <array>
#include <string_view>
#include <vector>

#include "core/attempt.h"
#include "core/text.h"
#include "i18n/modI18N2.h"
#include "i18n/state.h"

namespace modI18N2 {

using core::AttemptOr;
using platform::XmlDocument;
using platform::XmlNode;

namespace {

/// The chain of the second configured language, worked out by making it current for a moment.
LanguageChain SecondLanguageChain() {
  State& state = TheState();
  const std::string remembered = state.current.language;
  state.current.language = GetLanguage2();
  ResolveFallbacks();
  const LanguageChain chain = state.current;
  state.current.language = remembered;
  ResolveFallbacks();
  return chain;
}

/// The key stands in the query as it is: one with a double quote finds nothing.
std::string ContentQuery(const std::string& key) {
  return "contents/item[key=\"" + key + "\"]/content";
}

/// No node for a document that could not be loaded.
XmlNode RootOf(const std::unique_ptr<XmlDocument>& document) {
  return document ? document->DocumentElement() : XmlNode();
}

/// The contents for a key in the languages that count. These are looked at here: as conditions of
/// the query they cost several times as much, there being one content for each of many languages.
/// A language with a double quote finds nothing, like such a key.
std::vector<XmlNode> Candidates(const XmlNode& root, const std::string& key,
                                const LanguageChain& chain) {
  const std::array<std::string_view, 5> languages = {chain.language, chain.fallback,
                                                     chain.secondFallback, "en", "en-gb"};
  if (!root || std::ranges::any_of(languages, [](auto id) { return id.find('"') != id.npos; }))
    return {};
  std::vector<XmlNode> contents = root.SelectNodes(ContentQuery(key));
  std::erase_if(contents, [&](const XmlNode& content) {
    const auto language = content.Attribute("language");
    return !language || std::ranges::find(languages, *language) == languages.end();
  });
  return contents;
}

/// A content that stands alone is taken whatever its language, so that English shows where nothing
/// better exists. Among several, one of the chain's own languages must be there: the first of the
/// language itself, else the last of its fallback, else the first of the second fallback.
XmlNode BestContent(const std::vector<XmlNode>& contents, const LanguageChain& chain) {
  if (contents.size() == 1) return contents.front();
  XmlNode best;
  for (const XmlNode& content : contents) {
    const std::string language = content.Attribute("language").value_or("");
    if (language == chain.language) return content;
    if (language == chain.fallback || (language == chain.secondFallback && !best)) best = content;
  }
  return best;
}

/// Found text as an option of the lookup wants it: blanks trimmed, one put on each side.
std::string Padded(const std::string& text) {
  return text.empty() ? text : std::string(" ").append(core::Trim(text)).append(" ");
}

/// No node for a query that is malformed, or that is put to no node.
XmlNode SelectSingle(const XmlNode& node, const std::string& query) {
  return AttemptOr(XmlNode(), [&] { return node ? node.SelectSingleNode(query) : XmlNode(); });
}

/// The content for the first language of the chain that has one, without "en" to fall back to.
XmlNode ContentInChain(const XmlNode& item, const LanguageChain& chain) {
  const auto contentFor = [&](const std::string& language) {
    return SelectSingle(item, "content[@language='" + language + "']");
  };
  XmlNode content = contentFor(chain.language);
  if (content || chain.fallback.empty()) return content;
  content = contentFor(chain.fallback);
  if (content || chain.secondFallback.empty()) return content;
  return contentFor(chain.secondFallback);
}

}  // namespace

std::string GetText(const std::string& key, bool padded, bool fromProductSettings,
                    const std::string& defaultText, bool inSecondLanguage) {
  EnsureInitialised();
  const State& state = TheState();
  if (key.empty()) return "";
  if (!state.applicationLanguage && !fromProductSettings) return "";

  const LanguageChain chain = inSecondLanguage ? SecondLanguageChain() : state.current;
  const auto& document = fromProductSettings ? state.productSettings : state.applicationLanguage;
  const auto contents =
      AttemptOr(std::vector<XmlNode>(), [&] { return Candidates(RootOf(document), key, chain); });
  const XmlNode content = BestContent(contents, chain);
  if (!content) return padded ? "" : fromProductSettings ? defaultText : key;
  const std::string text = content.Text();
  return padded ? Padded(text) : text;
}

std::string GetText(const std::string& key) { return GetText(key, false, false, "1", false); }

std::string GetLanguageSetting(const std::string& key, std::int16_t slot, const std::string&) {
  EnsureInitialised();
  const State& state = TheState();
  const LanguageChain& chain = slot > 1 ? state.secondChain : state.firstChain;
  const XmlNode item =
      SelectSingle(RootOf(state.productSettings), "contents/item[key='" + key + "']");
  const XmlNode content = ContentInChain(item, chain);
  return content ? content.Text() : "";
}

}  // namespace modI18N2
