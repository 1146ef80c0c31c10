// See install_queue.h.
//
// SPDX-License-Identifier: MIT
#include "catalogue/install_queue.h"

#include <stdexcept>
#include <unordered_map>

#include "catalogue/page_builder.h"

namespace {

/// The boxes with one id that a person can tick, and the offered voices that have it.
struct Boxes {
  int count = 0;
  int voices = 0;
  bool firstIsTicked = false;
  bool allAreTicked = true;

  void Add(bool ticked) {
    if (count++ == 0) firstIsTicked = ticked;
    allAreTicked = allAreTicked && ticked;
  }

  /// Of several boxes with one id the first counts, as everywhere in a page. More boxes than voices
  /// are markup in a name's or text's own right, before the voice's box or behind it, to be seen or
  /// not; which of them the person looks at nobody can tell, so all of them have to say yes.
  bool AreTicked() const {
    if (count == 0) return false;
    return count > voices ? allAreTicked : firstIsTicked;
  }
};

/// An id of this kind could bring other ids with it: "7</item><item>9".
void CheckIsPlain(const std::string& id) {
  if (id.find_first_of("<&") != std::string::npos) {
    throw std::runtime_error("an id that holds markup cannot be queued");
  }
}

}  // namespace

std::string QueueText(const std::vector<platform::InputState>& inputs,
                      const std::vector<clsVoice>& offered) {
  std::unordered_map<std::string, Boxes> boxes;
  for (const clsVoice& voice : offered) ++boxes[CheckboxId(voice)].voices;
  for (const auto& input : inputs) {
    // Greyed boxes are those of installed voices, which repeat the id of an offered one.
    if (!input.disabled) boxes[input.id].Add(input.checked);
  }

  std::string text = "<queue>";
  for (const clsVoice& voice : offered) {
    if (!boxes.at(CheckboxId(voice)).AreTicked()) continue;
    CheckIsPlain(voice.ID);
    text += "<item>" + voice.ID + "</item>";
  }
  return text + "</queue>";
}
