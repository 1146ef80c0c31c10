// Texts as the helpers say them, so that each stands on a line between blanks.
//
// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

/// Percent-encoded byte by byte; a dash where there is nothing.
inline std::string Encoded(std::string_view text) {
  constexpr const char* kDigits = "0123456789ABCDEF";
  std::string encoded;
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    encoded += {'%', kDigits[byte >> 4], kDigits[byte & 15]};
  }
  return encoded.empty() ? "-" : encoded;
}
