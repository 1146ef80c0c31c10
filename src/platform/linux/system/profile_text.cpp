// See profile_text.h.
//
// SPDX-License-Identifier: MIT
#include "platform/linux/system/profile_text.h"

#include <glib.h>

#include "core/attempt.h"
#include "platform/linux/documents/native_path.h"
#include "platform/linux/g_ref.h"
#include "platform/linux/system/ansi_text.h"
#include "platform/linux/system/ini_text.h"

namespace platform {
namespace {

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

// A file that says an encoding and is not in it lacks every key, too.
std::optional<std::string> StoredValue(const std::optional<std::string>& bytes,
                                       const std::string& section, const std::string& key) {
  return core::AttemptOr(std::optional<std::string>(), [&] {
    return FindIniValue(DecodedText(bytes.value()), section, key, SameIgnoringCase);
  });
}

}  // namespace

std::string ProfileString(const std::optional<std::string>& bytes, const std::string& section,
                          const std::string& key, const std::string& fallback, std::size_t size) {
  if (size == 0) return "";
  const std::string value =
      StoredValue(bytes, section, key).value_or(std::string(TrimmedIniDefault(fallback)));
  // Cut as bytes of the code page, so that no character is cut in two.
  return Utf8FromAnsi(AnsiFromUtf8(WithoutIniQuotes(value)).substr(0, size - 1));
}

}  // namespace platform
