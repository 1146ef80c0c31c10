// See text.h.
//
// SPDX-License-Identifier: MIT
#include "core/text.h"

#include <algorithm>
#include <charconv>
#include <limits>
#include <stdexcept>
#include <system_error>

namespace core {
namespace {

char UpperCaseLetter(char letter) {
  return letter >= 'a' && letter <= 'z' ? static_cast<char>(letter - 'a' + 'A') : letter;
}

template <class Number>
Number NumberFromText(std::string_view text) {
  std::string_view digits = Trim(text, kXmlBlanks);
  // from_chars knows "-" but not "+", and would take the "-" of "+-1".
  if (digits.starts_with('+') && !digits.starts_with("+-")) digits.remove_prefix(1);
  Number number{};
  const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), number);
  if (error == std::errc::result_out_of_range) throw std::overflow_error("number too large");
  if (error != std::errc() || end != digits.data() + digits.size()) {
    throw std::runtime_error("not a whole number");
  }
  return number;
}

}  // namespace

std::string_view Trim(std::string_view text, std::string_view blanks) {
  const auto first = text.find_first_not_of(blanks);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

std::string UpperCase(std::string_view text) {
  std::string upper(text);
  std::ranges::transform(upper, upper.begin(), UpperCaseLetter);
  return upper;
}

bool ContainsIgnoringCase(std::string_view text, std::string_view part) {
  const auto same = [](char left, char right) {
    return UpperCaseLetter(left) == UpperCaseLetter(right);
  };
  return part.empty() || !std::ranges::search(text, part, same).empty();
}

std::string ReplaceAll(std::string text, std::string_view part, std::string_view replacement) {
  if (part.empty()) return text;
  for (auto at = text.find(part); at != std::string::npos;
       at = text.find(part, at + replacement.size())) {
    text.replace(at, part.size(), replacement);
  }
  return text;
}

std::vector<std::string> Split(std::string_view text, std::string_view separator) {
  std::vector<std::string> pieces;
  for (;;) {
    const auto at = separator.empty() ? std::string_view::npos : text.find(separator);
    pieces.emplace_back(text.substr(0, at));
    if (at == std::string_view::npos) return pieces;
    text.remove_prefix(at + separator.size());
  }
}

std::int32_t Int32FromText(std::string_view text) { return NumberFromText<std::int32_t>(text); }

std::int16_t Int16FromText(std::string_view text) { return NumberFromText<std::int16_t>(text); }

std::int16_t LeadingNumber(std::string_view text) {
  const auto first = text.find_first_not_of(kXmlBlanks);
  if (first == std::string_view::npos) return 0;
  text.remove_prefix(first);
  const bool negative = text.starts_with('-');
  if (negative || text.starts_with('+')) text.remove_prefix(1);
  const int most = std::numeric_limits<std::int16_t>::max() + (negative ? 1 : 0);
  int number = 0;
  for (const char digit : text) {
    if (digit < '0' || digit > '9') break;
    number = std::min(number * 10 + (digit - '0'), most);
  }
  return static_cast<std::int16_t>(negative ? -number : number);
}

std::int16_t Add16(std::int16_t left, std::int16_t right) {
  const int sum = left + right;
  if (sum < std::numeric_limits<std::int16_t>::min() ||
      sum > std::numeric_limits<std::int16_t>::max()) {
    throw std::overflow_error("the sum needs more than 16 bits");
  }
  return static_cast<std::int16_t>(sum);
}

}  // namespace core
