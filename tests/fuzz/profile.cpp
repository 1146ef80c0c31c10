// Profile strings: the values of ini files that other programs and people have written. The input
// is a line with the size of the reader's buffer, a line each with section, key and default, then
// the file.
//
// SPDX-License-Identifier: MIT
#include <glib.h>

#include <optional>
#include <string>

#include "core/text.h"
#include "platform/linux/system/ansi_text.h"
#include "platform/linux/system/profile_text.h"
#include "tests/fuzz/target.h"

namespace {

using fuzz::Require;
using platform::ProfileString;

struct Question {
  std::size_t size = 0;
  std::string section;
  std::string key;
  std::string fallback;

  std::string Ask(const std::optional<std::string>& bytes) const {
    return ProfileString(bytes, section, key, fallback, size);
  }
};

/// From none at all to somewhat more than any reader has.
std::size_t SizeFrom(std::string_view line) {
  constexpr std::size_t kMost = 300;
  std::size_t number = 0;
  for (const char digit : line) {
    number = (number * 10 + static_cast<unsigned char>(digit - '0')) % kMost;
  }
  return number;
}

/// Whether the bytes begin with the mark of an encoding, where they say more than their letters.
bool HasMark(std::string_view bytes) {
  return bytes.starts_with("\xEF\xBB\xBF") || bytes.starts_with("\xFF\xFE") ||
         bytes.starts_with("\xFE\xFF");
}

/// Whether a name can be written into a file and found there again.
bool IsPlainName(std::string_view name) {
  return !core::Trim(name, " \t\v\f\x1a").empty() &&
         name.find_first_of(std::string_view("\0\r\n[]=", 6)) == name.npos;
}

/// One line of text that fits the buffer, except that a default may have line ends of its own.
void CheckForm(const Question& question, const std::string& answer) {
  Require(g_utf8_validate_len(answer.data(), answer.size(), nullptr));
  const std::size_t length = platform::AnsiFromUtf8(answer).size();
  Require(question.size == 0 ? answer.empty() : length <= question.size - 1);
  Require(answer.find('\0') == std::string::npos);
  if (question.fallback.find('\r') == std::string::npos) {
    Require(answer.find_first_of("\r\n") == std::string::npos);
  }
}

/// The letter case of the names tells nothing apart.
void CheckLetterCase(const Question& question, const std::string& bytes,
                     const std::string& answer) {
  Question upper = question;
  upper.section = core::UpperCase(upper.section);
  upper.key = core::UpperCase(upper.key);
  Require(upper.Ask(bytes) == answer);
}

/// The answer is the default's where the file holds nothing of the kind.
void CheckDefault(const Question& question, const std::string& bytes, const std::string& answer) {
  const std::string absent = question.Ask(std::nullopt);
  Require(question.Ask("") == absent);
  const bool hasValue = bytes.find('=') != std::string::npos;
  if (!hasValue) Require(answer == absent);
  Question again = question;
  // A default that a reader has answered once is answered again, but for a second pair of quotes.
  again.fallback = absent;
  const bool hasQuotes = absent.find_first_of("'\"") != std::string::npos;
  if (!hasQuotes && !absent.ends_with(' ')) Require(again.Ask(std::nullopt) == absent);
}

/// What stands in one section does not answer for another.
void CheckSections(const Question& question, const std::string& bytes) {
  constexpr const char* kElsewhere = "elsewhere";
  if (core::ContainsIgnoringCase(bytes, kElsewhere) || HasMark(bytes)) return;
  Question other = question;
  other.section = kElsewhere;
  Require(other.Ask(bytes) == other.Ask(std::nullopt));
}

/// A section at the beginning hides all others of its name, whatever stands behind it; the bytes
/// are as good as the same text in another encoding.
void CheckFile(const Question& question, const std::string& bytes, const std::string& answer) {
  if (HasMark(bytes)) return;
  Require(question.Ask("\xEF\xBB\xBF" + platform::Utf8FromAnsi(bytes)) == answer);
  if (!IsPlainName(question.section) || !IsPlainName(question.key)) return;
  // The names are bytes of a file here, and no text of the caller's.
  Question plain = question;
  plain.section = platform::Utf8FromAnsi(question.section);
  plain.key = platform::Utf8FromAnsi(question.key);
  const std::string first = "[" + question.section + "]\n" + question.key + "=found\r";
  Require(plain.Ask(first + bytes) ==
          std::string("found").substr(0, plain.size - (plain.size > 0)));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  std::string_view input = fuzz::Text(data, size);
  Question question;
  question.size = SizeFrom(fuzz::TakeLine(input));
  question.section = fuzz::TakeLine(input);
  question.key = fuzz::TakeLine(input);
  question.fallback = fuzz::TakeLine(input);
  const std::string bytes(input);

  const std::string answer = question.Ask(bytes);
  CheckForm(question, answer);
  CheckLetterCase(question, bytes, answer);
  CheckDefault(question, bytes, answer);
  CheckSections(question, bytes);
  CheckFile(question, bytes, answer);
  return 0;
}
