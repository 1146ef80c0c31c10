// The syntax of Wine's registry files. Standard library only.
//
// SPDX-License-Identifier: MIT
#include "platform/linux/system/registry_text.h"

#include <algorithm>
#include <cstdint>
#include <optional>
#include <stdexcept>

namespace platform {
namespace {

constexpr std::string_view kHeader = "WINE REGISTRY Version 2";

void AppendUtf8(std::string& text, std::uint32_t codePoint) {
  const auto tail = [&](int shift) {
    text += static_cast<char>(0x80 | ((codePoint >> shift) & 0x3F));
  };
  if (codePoint < 0x80) {
    text += static_cast<char>(codePoint);
  } else if (codePoint < 0x800) {
    text += static_cast<char>(0xC0 | (codePoint >> 6));
    tail(0);
  } else if (codePoint < 0x10000) {
    text += static_cast<char>(0xE0 | (codePoint >> 12));
    tail(6);
    tail(0);
  } else {
    text += static_cast<char>(0xF0 | (codePoint >> 18));
    tail(12);
    tail(6);
    tail(0);
  }
}

int DigitValue(char digit) {
  if (digit >= '0' && digit <= '9') return digit - '0';
  if (digit >= 'a' && digit <= 'f') return digit - 'a' + 10;
  if (digit >= 'A' && digit <= 'F') return digit - 'A' + 10;
  return 16;
}

// Reads an escaped text up to its closing character, which it takes too.
class EscapedText {
 public:
  EscapedText(std::string_view& line, char closing) : mLine(line), mClosing(closing) {}

  /// Absent when the line ends before the text does.
  std::optional<std::string> Read() {
    while (!mLine.empty()) {
      const char character = Take();
      if (character == mClosing) {
        FlushSurrogate();
        return std::move(mText);
      }
      if (character == '\\') {
        ReadEscape();
      } else {
        FlushSurrogate();
        mText += character;
      }
    }
    return std::nullopt;
  }

 private:
  char Take() {
    const char character = mLine.front();
    mLine.remove_prefix(1);
    return character;
  }

  void ReadEscape() {
    if (mLine.empty()) return;
    const char kind = Take();
    constexpr std::string_view kLetters = "abefnrtv";
    constexpr std::string_view kMeanings = "\a\b\x1b\f\n\r\t\v";
    const std::size_t letter = kLetters.find(kind);
    if (letter != std::string_view::npos)
      return AppendUnit(static_cast<unsigned char>(kMeanings.at(letter)));
    if (kind == 'x') return AppendUnit(ReadNumber(0, 16, 4));
    if (DigitValue(kind) < 8) return AppendUnit(ReadNumber(DigitValue(kind), 8, 2));
    FlushSurrogate();
    mText += kind;
  }

  std::uint32_t ReadNumber(std::uint32_t number, int base, int digits) {
    while (digits-- > 0 && !mLine.empty() && DigitValue(mLine.front()) < base) {
      number = number * static_cast<std::uint32_t>(base) +
               static_cast<std::uint32_t>(DigitValue(Take()));
    }
    return number;
  }

  // Numbers are UTF-16 units: a character beyond the first 65536 comes as two of them.
  void AppendUnit(std::uint32_t unit) {
    const bool completes = mHighSurrogate && unit >= 0xDC00 && unit <= 0xDFFF;
    if (completes) {
      AppendUtf8(mText, 0x10000 + ((mHighSurrogate - 0xD800) << 10) + (unit - 0xDC00));
      mHighSurrogate = 0;
      return;
    }
    FlushSurrogate();
    if (unit >= 0xD800 && unit <= 0xDBFF) {
      mHighSurrogate = unit;
    } else {
      AppendUtf8(mText, IsSurrogate(unit) ? kReplacement : unit);
    }
  }

  void FlushSurrogate() {
    if (mHighSurrogate) AppendUtf8(mText, kReplacement);
    mHighSurrogate = 0;
  }

  static bool IsSurrogate(std::uint32_t unit) { return unit >= 0xD800 && unit <= 0xDFFF; }

  static constexpr std::uint32_t kReplacement = 0xFFFD;

  std::string_view& mLine;
  const char mClosing;
  std::string mText;
  std::uint32_t mHighSurrogate = 0;
};

std::optional<std::string> ReadQuoted(std::string_view& line) {
  if (!line.starts_with('"')) return std::nullopt;
  line.remove_prefix(1);
  return EscapedText(line, '"').Read();
}

// `"name"="text"`, or `"name"=str(2):"text"` for one with variables in it.
void ReadValue(std::string_view line, RegistryVisitor& visitor) {
  const std::optional<std::string> name = ReadQuoted(line);
  if (!name || !line.starts_with('=')) return;
  line.remove_prefix(1);
  constexpr std::string_view kWithVariables = "str(2):";
  if (line.starts_with(kWithVariables)) line.remove_prefix(kWithVariables.size());
  if (const std::optional<std::string> text = ReadQuoted(line)) visitor.OnText(*name, *text);
}

std::string_view TakeLine(std::string_view& text) {
  const std::size_t end = std::min(text.find('\n'), text.size());
  std::string_view line = text.substr(0, end);
  text.remove_prefix(std::min(end + 1, text.size()));
  if (line.ends_with('\r')) line.remove_suffix(1);
  return line;
}

}  // namespace

void ReadRegistry(std::string_view text, RegistryVisitor& visitor) {
  if (TakeLine(text) != kHeader) throw std::runtime_error("this is no registry file of Wine");
  bool wanted = false;
  while (!text.empty()) {
    std::string_view line = TakeLine(text);
    if (line.starts_with('[')) {
      line.remove_prefix(1);
      const std::optional<std::string> path = EscapedText(line, ']').Read();
      wanted = path && visitor.OnKey(*path);
    } else if (wanted) {
      ReadValue(line, visitor);
    }
  }
}

}  // namespace platform
