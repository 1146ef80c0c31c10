// Profile strings: the file and its encoding. The syntax is ini_text.h's.
//
// SPDX-License-Identifier: MIT
#include "platform/profile.h"

#include <glib.h>

#include <optional>
#include <string_view>

#include "core/attempt.h"
#include "platform/linux/ansi_text.h"
#include "platform/linux/file_access.h"
#include "platform/linux/g_ref.h"
#include "platform/linux/ini_text.h"
#include "platform/linux/paths.h"

namespace platform {
namespace {

// Settings files have a few KB. The file is read for every question, so a huge one would be felt.
constexpr std::size_t kFileLimit = std::size_t{1} << 20;

std::string Utf8From(std::string_view bytes, const char* encoding) {
  GErrorCheck error;
  gsize length = 0;
  const GMemory<char> text(g_convert_with_fallback(bytes.data(), static_cast<gssize>(bytes.size()),
                                                   "UTF-8", encoding, "?", nullptr, &length,
                                                   error.Out()));
  error.Check();
  return {text.get(), length};
}

// By the mark that a file begins with; without one, bytes are the ANSI code page.
std::string DecodedText(std::string_view bytes) {
  using namespace std::string_view_literals;
  if (bytes.starts_with("\xEF\xBB\xBF"sv)) return std::string(bytes.substr(3));
  if (bytes.starts_with("\xFF\xFE"sv)) return Utf8From(bytes.substr(2), "UTF-16LE");
  if (bytes.starts_with("\xFE\xFF"sv)) return Utf8From(bytes.substr(2), "UTF-16BE");
  return Utf8FromAnsi(bytes);
}

// A file that is not there, or cannot be read, lacks every key.
std::optional<std::string> StoredValue(const std::string& file, const std::string& section,
                                       const std::string& key) {
  return core::AttemptOr(std::optional<std::string>(), [&] {
    const std::string text = DecodedText(ReadRegularFile(NativePath(file), kFileLimit));
    return FindIniValue(text, section, key, SameIgnoringCase);
  });
}

}  // namespace

std::string ReadProfileString(const std::string& file, const std::string& section,
                              const std::string& key, const std::string& fallback,
                              std::size_t size) {
  if (size == 0) return "";
  const std::string value =
      StoredValue(file, section, key).value_or(std::string(TrimmedIniDefault(fallback)));
  // Cut as bytes of the code page, so that no character is cut in two.
  return Utf8FromAnsi(AnsiFromUtf8(WithoutIniQuotes(value)).substr(0, size - 1));
}

}  // namespace platform
