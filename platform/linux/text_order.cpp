// The order of names, by ICU's root collation: the rules of no language in particular.
//
// SPDX-License-Identifier: MIT
#include "platform/text_order.h"

#include <unicode/ucol.h>

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

}  // namespace

int CompareText(const std::string& left, const std::string& right) {
  static const Collator collator = MakeCollator();
  UErrorCode code = U_ZERO_ERROR;
  const UCollationResult result =
      ucol_strcollUTF8(collator.get(), left.data(), static_cast<std::int32_t>(left.size()),
                       right.data(), static_cast<std::int32_t>(right.size()), &code);
  Check(code);
  return result;
}

}  // namespace platform
