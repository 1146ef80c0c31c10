// What localisation remembers. For the files of this module, and for tests, which begin with a
// fresh state: `TheState() = {}`.
//
// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "platform/documents/xml_document.h"

namespace modI18N2 {

/// A language with what stands behind it; a fallback that there is none of is empty.
struct LanguageChain {
  std::string language;
  std::string fallback;
  std::string secondFallback;
};

/// An error that was raised and passed over.
struct RaisedError {
  std::uint32_t number;
  std::string description;
  std::string source;
};

struct State {
  bool initialised = false;

  /// Null when the file is missing or malformed.
  std::unique_ptr<platform::XmlDocument> languageList;
  std::unique_ptr<platform::XmlDocument> productSettings;
  std::unique_ptr<platform::XmlDocument> applicationLanguage;
  std::string applicationLanguageFileName;

  std::array<std::string, 2> configuredLanguages;
  std::int16_t configuredLanguageCount = 1;
  /// From 1 to the count.
  std::int16_t languageIndex = 1;

  LanguageChain current;
  /// Some language of the current chain had a `caseSensitive` attribute. Recorded for whoever looks
  /// into the state; matching is exact either way.
  bool caseSensitive = false;

  /// The chains of the two configured languages, and what they are translated to.
  LanguageChain firstChain;
  LanguageChain secondChain;
  std::array<std::string, 2> translateTargets;

  std::optional<RaisedError> lastError;
};

State& TheState();

/// What every operation that needs the documents begins with.
void EnsureInitialised();

}  // namespace modI18N2
