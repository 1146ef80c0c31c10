// See install_queue.h.
//
// SPDX-License-Identifier: MIT
#include "catalogue/install_queue.h"

#include <unordered_map>

#include "catalogue/page_builder.h"

std::string QueueText(const std::vector<platform::InputState>& inputs,
                      const std::vector<clsVoice>& offered) {
  // Of several boxes with one id the first counts, as everywhere in a page.
  std::unordered_map<std::string, bool> ticked;
  for (const auto& input : inputs) ticked.emplace(input.id, input.checked);

  std::string text = "<queue>";
  for (const clsVoice& voice : offered) {
    const auto box = ticked.find(CheckboxId(voice));
    if (box != ticked.end() && box->second) text += "<item>" + voice.ID + "</item>";
  }
  return text + "</queue>";
}
