// UTF-8, which the program speaks, and UTF-16, which Windows speaks. Every text crosses here and
// nowhere else, and the functions of Windows that are used take UTF-16 (the "W" ones): they know
// every path on every version, which the code page of the "A" functions does not.
//
// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

namespace platform {

/// Bytes that are no UTF-8 become replacement characters.
std::wstring WideText(std::string_view utf8);

/// The same, but throws std::runtime_error for bytes that are no UTF-8.
std::wstring CheckedWideText(std::string_view utf8);

/// Lone surrogates become replacement characters.
std::string Utf8Text(std::wstring_view wide);

/// The ANSI code page, in which old settings files are written; "?" stands for what it lacks.
std::string AnsiText(std::wstring_view wide);
std::wstring WideTextOfAnsi(std::string_view ansi);

}  // namespace platform
