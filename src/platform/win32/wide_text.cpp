// Texts to and from UTF-16, by the system's own tables.
//
// SPDX-License-Identifier: MIT
#include "platform/win32/wide_text.h"

#include <windows.h>

#include <limits>
#include <stdexcept>

#include "platform/errors.h"

namespace platform {
namespace {

int Length(std::size_t size) {
  if (size > static_cast<std::size_t>(std::numeric_limits<int>::max())) {
    throw Unsupported("the text is too long");
  }
  return static_cast<int>(size);
}

std::wstring Widened(UINT codePage, DWORD flags, std::string_view text) {
  if (text.empty()) return {};
  const int length = Length(text.size());
  const int needed = MultiByteToWideChar(codePage, flags, text.data(), length, nullptr, 0);
  if (needed == 0) throw std::runtime_error("the text is not in its encoding");
  std::wstring wide(static_cast<std::size_t>(needed), L'\0');
  MultiByteToWideChar(codePage, flags, text.data(), length, wide.data(), needed);
  return wide;
}

std::string Narrowed(UINT codePage, std::wstring_view wide) {
  if (wide.empty()) return {};
  const int length = Length(wide.size());
  const int needed =
      WideCharToMultiByte(codePage, 0, wide.data(), length, nullptr, 0, nullptr, nullptr);
  if (needed == 0) throw std::runtime_error("the text cannot be converted");
  std::string text(static_cast<std::size_t>(needed), '\0');
  WideCharToMultiByte(codePage, 0, wide.data(), length, text.data(), needed, nullptr, nullptr);
  return text;
}

}  // namespace

std::wstring WideText(std::string_view utf8) { return Widened(CP_UTF8, 0, utf8); }

std::wstring CheckedWideText(std::string_view utf8) {
  return Widened(CP_UTF8, MB_ERR_INVALID_CHARS, utf8);
}

std::string Utf8Text(std::wstring_view wide) { return Narrowed(CP_UTF8, wide); }

std::string AnsiText(std::wstring_view wide) { return Narrowed(CP_ACP, wide); }

std::wstring WideTextOfAnsi(std::string_view ansi) { return Widened(CP_ACP, 0, ansi); }

}  // namespace platform
