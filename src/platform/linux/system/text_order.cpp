// The order of names, by ICU's root collation: the rules of no language in particular.
//
// SPDX-License-Identifier: MIT
#include "platform/system/text_order.h"

#include <unicode/ucol.h>
#include <unicode/ustring.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <stdexcept>

namespace platform {
namespace {

struct CloseCollator {
  void operator()(UCollator* collator) const { ucol_close(collator); }
};
using Collator = std::unique_ptr<UCollator, CloseCollator>;

void Check(UErrorCode code) {
  if (U_FAILURE(code)) throw std::runtime_error(u_errorName(code));
}

// Secondary strength tells letters and accents apart, and not case.
Collator MakeCollator() {
  UErrorCode code = U_ZERO_ERROR;
  Collator collator(ucol_open("", &code));
  Check(code);
  ucol_setStrength(collator.get(), UCOL_SECONDARY);
  return collator;
}

// A byte that is no UTF-8 is ordered as a character that cannot be shown.
std::u16string Utf16(const std::string& text) {
  constexpr UChar32 kReplacement = 0xFFFD;
  std::u16string wide(text.size(), u'\0');  // never more units than bytes
  std::int32_t length = 0;
  UErrorCode code = U_ZERO_ERROR;
  u_strFromUTF8WithSub(wide.data(), static_cast<std::int32_t>(wide.size()), &length, text.data(),
                       static_cast<std::int32_t>(text.size()), kReplacement, nullptr, &code);
  Check(code);
  wide.resize(static_cast<std::size_t>(length));
  return wide;
}

}  // namespace

std::string SortKey(const std::string& text) {
  static const Collator collator = MakeCollator();
  const std::u16string wide = Utf16(text);
  const auto write = [&](void* key, std::size_t size) {
    return static_cast<std::size_t>(
        ucol_getSortKey(collator.get(), wide.data(), static_cast<std::int32_t>(wide.size()),
                        static_cast<std::uint8_t*>(key), static_cast<std::int32_t>(size)));
  };
  // Room for the key of any name that is one; for longer texts the answer says what is needed.
  std::array<char, 256> usual;
  const std::size_t size = write(usual.data(), usual.size());
  if (size <= usual.size()) return {usual.data(), size};
  std::string key(size, '\0');
  write(key.data(), key.size());
  return key;
}

}  // namespace platform
