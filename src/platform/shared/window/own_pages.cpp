// See own_pages.h.
//
// SPDX-License-Identifier: MIT
#include "platform/shared/window/own_pages.h"

#include <algorithm>
#include <charconv>

#include "core/text.h"

namespace platform {
namespace {

/// "C:/..." for a file on a drive, "//server/..." on a server, "/..." for any other.
std::string Canonical(std::string_view address) {
  std::string text = core::UpperCase(address);
  std::ranges::replace(text, '\\', '/');
  constexpr std::string_view kScheme = "FILE:";
  const bool isUrl = text.starts_with(kScheme);
  if (isUrl) text.erase(0, kScheme.size());
  const std::size_t slashes = std::min(text.find_first_not_of('/'), text.size());
  text.erase(0, slashes);
  if (text.size() > 1 && text.at(1) == ':') return text;
  const bool isOnServer = isUrl ? slashes == 2 || slashes > 3 : slashes > 1;
  return (isOnServer ? "//" : "/") + text;
}

/// `text` with each "%41" replaced by its byte.
std::string Unescaped(std::string_view text) {
  std::string plain;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const std::string_view digits = text.substr(i + 1, 2);
    unsigned char byte = 0;
    const auto* const end = digits.data() + digits.size();
    const bool isEscape = text[i] == '%' && digits.size() == 2 &&
                          std::from_chars(digits.data(), end, byte, 16).ptr == end;
    plain += isEscape ? static_cast<char>(byte) : text[i];
    if (isEscape) i += digits.size();
  }
  return plain;
}

bool Names(std::string_view address, std::string_view page) {
  if (!address.starts_with(page)) return false;
  const std::string_view rest = address.substr(page.size());
  return rest.empty() || rest.front() == '#' || rest.front() == '?';
}

}  // namespace

void OwnPages::Navigate(std::string_view path) {
  std::string page = Canonical(path);
  std::erase(mPages, page);
  mPages.push_back(std::move(page));
}

bool OwnPages::IsRefused(std::string_view address, bool isLocal) const {
  // A path may contain "%41" itself, so both readings count.
  const std::string written = Canonical(address), plain = Canonical(Unescaped(address));
  const auto found = std::find_if(mPages.rbegin(), mPages.rend(), [&](const std::string& page) {
    return Names(written, page) || Names(plain, page);
  });
  if (found == mPages.rend()) return !isLocal;
  return found != mPages.rbegin();
}

}  // namespace platform
