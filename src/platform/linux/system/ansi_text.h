// The single-byte code page of the Windows program, which is 1252 for the languages that settings
// files name: they hold identifiers and numbers.
//
// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

namespace platform {

/// Every byte is a character: the five that the code page leaves open are control characters.
std::string Utf8FromAnsi(std::string_view bytes);

/// A "?" stands for each UTF-16 unit that the code page lacks, and for each byte that is not UTF-8.
std::string AnsiFromUtf8(std::string_view text);

}  // namespace platform
