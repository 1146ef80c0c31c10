// The syntax of ini files as Windows reads them, oddities included: settings files are written by
// other programs and by hand, and were always read this way. Pure text; the standard library only.
//
// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace platform {

/// Whether two names count as one.
using SameName = std::function<bool(std::string_view, std::string_view)>;

/// The value of `key` in `section`, blanks around it dropped, quotes kept. Absent when there is no
/// such section or key, or the key's line has no "=". Only the first section of that name, and in
/// it the first key of that name, count.
std::optional<std::string> FindIniValue(std::string_view text, std::string_view section,
                                        std::string_view key, const SameName& sameName);

/// A value without the one pair of equal quotes (' or ") around it.
std::string_view WithoutIniQuotes(std::string_view value);

/// A default as the reader treats it before it becomes the value: trailing blanks dropped, but not
/// its first character.
std::string_view TrimmedIniDefault(std::string_view fallback);

}  // namespace platform
