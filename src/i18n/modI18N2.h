// Localisation: which language is current, the text for a key, and dressing a window in both. The
// files are shared with the sibling product Parvix, so their layout and the rules of the search are
// kept as that product knows them.
//
// Call InitI18N first. Every other operation loads the documents at its first use, and waits for
// them while events are handled. No operation fails: what cannot be had is an empty or stated
// value.
//
// Where the rest lives: language_state.cpp (which language), text_lookup.cpp (which text),
// form_translation.cpp (onto a window), language_appearance.cpp (font and direction), state.h.
//
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>

#include "platform/documents/xml.h"
#include "platform/window/form.h"

namespace modI18N2 {

/// Reads the configured languages and makes the first one current. `languageFileName` is the file,
/// without folder, that holds the program's texts.
///
/// Language1 and Language2 of section "I18N" come from the program's own ini or, when that names no
/// Language1, both from the "config.ini" of Parvix; "en-gb" when there is none either.
void InitI18N(const std::string& languageFileName);

/// A value of any ini file; empty when it is absent. At most 254 bytes.
std::string ReadIniValue(const std::string& file, const std::string& section,
                         const std::string& key);

/// Loads "Languages.xml" and the language file from the program's folder and "Settings.xml" from
/// the folder of Parvix. A document that is missing or malformed is done without.
void Initialise();

/// Makes the first configured language current, and `language` only when there is none: kept so,
/// although it leaves the configured language index without effect in practice.
void SetLanguage(const std::string& language);

/// Sets the two fallbacks of the current language: its `fallback` and that one's. The chain ends
/// there; the lookup adds "en" and "en-gb" of its own.
void ResolveFallbacks();

/// Records the chains of fallbacks of both configured languages. While the language list is not
/// loaded, as at a normal start, only the languages themselves are recorded.
void ResolveLanguagePair(const std::string& first, const std::string& second);

/// Makes the language current that the list marks with `localeID` 1024 or 0, "en" when it marks
/// none, and answers its locale number (1033 when none). The user's own locale is not looked at
/// beyond whether there is one: the configured language decides anyway.
std::int32_t DetectLocaleLanguage();

/// The configured languages; the second is empty when only one is configured.
std::string GetLanguage1();
std::string GetLanguage2();

/// The first language of the first chain; empty before InitI18N.
std::string GetPrimaryLanguage();

/// The `language` element of the current language or one of its fallbacks, whichever stands first
/// in the language list; no node when there is none.
platform::XmlNode FindLanguageNode();

/// Handles events that are waiting, a hundred times over: used while a document loads.
void PumpEvents();

/// The text for `key` in the current language or one of its fallbacks; the key itself when there is
/// none, so that texts keyed by their English wording are never missing. Empty for every key when
/// the language file could not be loaded.
///
/// `padded`: trimmed, with one blank on each side, and empty when there is no text.
/// `fromProductSettings`: search the settings of Parvix; `defaultText` when there is no text.
/// `inSecondLanguage`: search in the second configured language.
std::string GetText(const std::string& key, bool padded, bool fromProductSettings,
                    const std::string& defaultText, bool inSecondLanguage);

/// GetText in its usual form, without any of the options.
std::string GetText(const std::string& key);

/// A setting of Parvix for the first configured language (`slot` up to 1) or the second (from 2),
/// or for their recorded fallbacks; empty when there is none. The third argument is not used.
std::string GetLanguageSetting(const std::string& key, std::int16_t slot,
                               const std::string& unused);

/// Puts the current language onto a window: captions, tool tips, font and reading direction. Keys
/// are made of names: "frmSelect.cmdInstall.Caption"; a control's Tag replaces window and control
/// name. The second argument is not used.
void TranslateForm(platform::Form& form, int unused);

/// Whether the operating system's major version is 6 or more; false when it is unknown.
bool IsVistaOrLater();

/// The face name for the current language.
std::string GetLanguageFont();

/// The Windows character set number for the current language; 0 when none is known.
std::int16_t GetLanguageCharset();

/// Whether the current language is written from right to left.
bool IsRightToLeft();

}  // namespace modI18N2
