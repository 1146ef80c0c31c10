// Text and number helpers that the standard library lacks. Texts are UTF-8; only ASCII letters have
// a case here, which is enough for the markers and words that the program itself defines. Ordering
// what people read is platform/system/text_order.h's work.
//
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace core {

/// Blanks, tabs and line ends: what XML calls white space.
inline constexpr std::string_view kXmlBlanks = " \t\r\n";

/// `text` without any of `blanks` at both ends.
std::string_view Trim(std::string_view text, std::string_view blanks = " ");

/// `text` with ASCII letters in upper case.
std::string UpperCase(std::string_view text);

/// Whether `part` stands anywhere in `text`, ASCII letters compared without regard to case.
bool ContainsIgnoringCase(std::string_view text, std::string_view part);

/// `text` with every occurrence of `part` replaced, found from left to right.
/// An empty `part` occurs nowhere.
std::string ReplaceAll(std::string text, std::string_view part, std::string_view replacement);

/// The pieces between the occurrences of `separator`; always at least one, pieces may be empty. An
/// empty `separator` occurs nowhere.
std::vector<std::string> Split(std::string_view text, std::string_view separator);

/// The whole number that `text` is: an optional sign and decimal digits, blanks allowed around.
/// Throws std::overflow_error beyond the type and std::runtime_error for anything else.
std::int32_t Int32FromText(std::string_view text);
std::int16_t Int16FromText(std::string_view text);

/// The number that `text` begins with, leading blanks passed over ("2 and more" is 2); 0 when it
/// begins with none. A number beyond the type becomes the nearest one that fits.
std::int16_t LeadingNumber(std::string_view text);

/// The sum; throws std::overflow_error where it does not fit in 16 bits.
std::int16_t Add16(std::int16_t left, std::int16_t right);

}  // namespace core
