// See modXPStyle.h.
//
// SPDX-License-Identifier: MIT
#include "app/modXPStyle.h"

#include <cstdint>

#include "core/attempt.h"
#include "platform/system/system.h"

namespace modXPStyle {

bool InitCommonControlsXP() {
  constexpr std::uint32_t kRecordSize = 8;
  constexpr std::uint32_t kExtendedClasses = 0x200;  // ICC_USEREX_CLASSES
  return core::Attempt([] { platform::InitCommonControls(kRecordSize, kExtendedClasses); });
}

}  // namespace modXPStyle
