// What the bytes of a profile file answer: their encoding, and what becomes of a value. Finding and
// reading the file is profile.cpp's, the syntax ini_text.h's.
//
// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace platform {

/// As ReadProfileString, of a file with these bytes; absent for one that is not there or cannot be
/// read, which lacks every key.
std::string ProfileString(const std::optional<std::string>& bytes, const std::string& section,
                          const std::string& key, const std::string& fallback, std::size_t size);

}  // namespace platform
