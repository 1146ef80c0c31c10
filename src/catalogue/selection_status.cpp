// See selection_status.h.
//
// SPDX-License-Identifier: MIT
#include "catalogue/selection_status.h"

#include <cstddef>

#include "core/attempt.h"
#include "core/text.h"

Selection CountSelection(const std::vector<platform::InputState>& inputs,
                         const std::vector<clsVoice>& offered) {
  Selection selection;
  for (std::size_t i = 0; i < inputs.size(); ++i) {
    if (!inputs[i].checked || inputs[i].disabled) continue;
    core::Attempt([&] { selection.count = core::Add16(selection.count, 1); });
    if (i >= offered.size()) continue;
    core::Attempt([&] { selection.megabytes = core::Add16(selection.megabytes, offered[i].Size); });
  }
  return selection;
}

std::string StatusText(const Selection& selection, const TextLookup& text) {
  return selection.count <= 0 ? "" : SpokenStatusText(selection, text);
}

std::string SpokenStatusText(const Selection& selection, const TextLookup& text) {
  return std::to_string(selection.count) + " " + text(selection.count == 1 ? "voice," : "voices,") +
         " " + std::to_string(selection.megabytes) + "MB";
}
