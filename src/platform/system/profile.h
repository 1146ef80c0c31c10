// Windows-style ini files. Only the raw reading; which file, which key and what a value means is in
// paths/, because that does not differ by system.
//
// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>

namespace platform {

/// The value of `key` in `section` of the file, with the results of GetPrivateProfileStringA:
/// section and key without regard to case, blanks and one pair of equal quotes around a value
/// dropped, only the first section of a name and the first key of a name count. `fallback` (treated
/// like a value) when file, section or key is absent; empty for a key with an empty value.
///
/// Values are single-byte text in the system's ANSI code page, answered in UTF-8; before that they
/// are cut to `size` - 1 bytes, as the size of the caller's buffer would.
std::string ReadProfileString(const std::string& file, const std::string& section,
                              const std::string& key, const std::string& fallback,
                              std::size_t size);

}  // namespace platform
