// Text of an input as part of a document. Inputs are short and readable so that what the fuzzer
// changes in them is seldom a bracket; documents as they come, brackets and all, are inputs too.
//
// SPDX-License-Identifier: MIT
#pragma once

#include <glib.h>

#include <string>
#include <string_view>

#include "platform/linux/system/ansi_text.h"

namespace fuzz {

/// Whether an input, or a part of one, is a document itself: it begins with a tag or a mark.
inline bool IsDocument(std::string_view text) {
  return text.starts_with('<') || text.starts_with("\xEF\xBB\xBF") ||
         text.starts_with("\xFF\xFE") || text.starts_with("\xFE\xFF");
}

/// The text as far as XML has such characters; bytes that are not UTF-8 are those of the code page.
inline std::string Clean(std::string_view text) {
  const bool isUtf8 = g_utf8_validate_len(text.data(), text.size(), nullptr);
  std::string clean;
  for (const char character : isUtf8 ? std::string(text) : platform::Utf8FromAnsi(text)) {
    const auto number = static_cast<unsigned char>(character);
    if (number >= 0x20 || character == '\t' || character == '\r') clean += character;
  }
  // The two of them that have the form of a character and are none.
  for (const char* none : {"\xEF\xBF\xBE", "\xEF\xBF\xBF"}) {
    for (auto at = clean.find(none); at != std::string::npos; at = clean.find(none, at)) {
      clean.erase(at, 3);
    }
  }
  return clean;
}

/// A clean text as it stands in a document, in an element or an attribute in double quotes.
inline std::string Escaped(std::string_view clean) {
  std::string escaped;
  for (const char character : clean) {
    switch (character) {
      case '&':
        escaped += "&amp;";
        break;
      case '<':
        escaped += "&lt;";
        break;
      case '>':
        escaped += "&gt;";
        break;
      case '"':
        escaped += "&quot;";
        break;
      case '\t':
        escaped += "&#9;";
        break;
      case '\r':
        escaped += "&#13;";
        break;
      default:
        escaped += character;
    }
  }
  return escaped;
}

}  // namespace fuzz
