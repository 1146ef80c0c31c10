// Code page 1252. A table of its own, since iconv refuses the five bytes that Windows lets pass.
//
// SPDX-License-Identifier: MIT
#include "platform/linux/system/ansi_text.h"

#include <glib.h>

#include <algorithm>
#include <array>

namespace platform {
namespace {

// What the bytes 0x80 to 0x9F stand for; all others stand for the code point of their number.
constexpr std::array<gunichar, 32> kUpperControls = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};
constexpr gunichar kFirst = 0x80;
constexpr gunichar kBehindLast = kFirst + kUpperControls.size();
static_assert(kBehindLast == 0xA0);

gunichar CodePointOf(unsigned char byte) {
  return byte >= kFirst && byte < kBehindLast ? kUpperControls.at(byte - kFirst) : byte;
}

std::string BytesFor(gunichar codePoint) {
  const auto found = std::find(kUpperControls.begin(), kUpperControls.end(), codePoint);
  if (found != kUpperControls.end()) {
    return {static_cast<char>(kFirst + (found - kUpperControls.begin()))};
  }
  const bool isItself = codePoint < kFirst || (codePoint >= kBehindLast && codePoint <= 0xFF);
  if (isItself) return {static_cast<char>(codePoint)};
  return codePoint > 0xFFFF ? "??" : "?";
}

}  // namespace

std::string Utf8FromAnsi(std::string_view bytes) {
  std::string text;
  for (const char byte : bytes) {
    char encoded[6];
    const int length = g_unichar_to_utf8(CodePointOf(static_cast<unsigned char>(byte)), encoded);
    text.append(encoded, static_cast<std::size_t>(length));
  }
  return text;
}

std::string AnsiFromUtf8(std::string_view text) {
  std::string bytes;
  while (!text.empty()) {
    const gunichar codePoint =
        g_utf8_get_char_validated(text.data(), static_cast<gssize>(text.size()));
    const bool isValid = codePoint < 0x110000;
    bytes += isValid ? BytesFor(codePoint) : "?";
    text.remove_prefix(isValid ? static_cast<std::size_t>(g_unichar_to_utf8(codePoint, nullptr))
                               : 1);
  }
  return bytes;
}

}  // namespace platform
