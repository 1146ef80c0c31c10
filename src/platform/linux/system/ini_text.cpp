// Reading ini text. Standard library only.
//
// SPDX-License-Identifier: MIT
#include "platform/linux/system/ini_text.h"

#include <algorithm>

namespace platform {
namespace {

// Ctrl-Z once ended files. The no-break space is no blank.
constexpr std::string_view kBlanks = " \t\v\f\x1a";

std::string_view Trim(std::string_view text) {
  const std::size_t first = text.find_first_not_of(kBlanks);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

std::string_view UpToNul(std::string_view text) { return text.substr(0, text.find('\0')); }

// Takes the next line. LF ends one, and so does CR, with an LF behind it or without.
std::string_view TakeLine(std::string_view& text) {
  const std::size_t end = std::min(text.find_first_of("\r\n"), text.size());
  const std::string_view line = text.substr(0, end);
  text.remove_prefix(std::min(end + 1, text.size()));
  return line;
}

// The name that a section line opens. What stands behind the last "]" is nothing; a line without
// one is a key's.
std::optional<std::string_view> SectionName(std::string_view line) {
  const std::size_t end = line.rfind(']');
  if (!line.starts_with('[') || end == std::string_view::npos) return std::nullopt;
  return Trim(UpToNul(line.substr(1, end - 1)));
}

}  // namespace

std::optional<std::string> FindIniValue(std::string_view text, std::string_view section,
                                        std::string_view key, const SameName& sameName) {
  const std::string_view wantedSection = Trim(UpToNul(section));
  const std::string_view wantedKey = Trim(UpToNul(key));
  // What stands before the first section belongs to one without a name.
  bool inside = wantedSection.empty();
  while (!text.empty()) {
    const std::string_view line = Trim(TakeLine(text));
    if (const std::optional<std::string_view> name = SectionName(line)) {
      if (inside) return std::nullopt;
      inside = sameName(*name, wantedSection);
      continue;
    }
    if (!inside || line.empty()) continue;
    const std::size_t equals = line.find('=');
    if (!sameName(UpToNul(Trim(line.substr(0, equals))), wantedKey)) continue;
    if (equals == std::string_view::npos) return std::nullopt;
    return std::string(UpToNul(Trim(line.substr(equals + 1))));
  }
  return std::nullopt;
}

std::string_view WithoutIniQuotes(std::string_view value) {
  const bool quoted = value.size() >= 2 && (value.front() == '"' || value.front() == '\'') &&
                      value.back() == value.front();
  return quoted ? value.substr(1, value.size() - 2) : value;
}

std::string_view TrimmedIniDefault(std::string_view fallback) {
  const std::string_view text = UpToNul(fallback);
  const std::size_t last = text.find_last_not_of(' ');
  return text.substr(0, last == std::string_view::npos ? 1 : last + 1);
}

}  // namespace platform
