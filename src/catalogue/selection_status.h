// What is ticked on the page, counted and summed for the status line.
//
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "catalogue/clsVoice.h"
#include "catalogue/text_lookup.h"
#include "platform/window/web_browser.h"

struct Selection {
  std::int16_t count = 0;
  std::int16_t megabytes = 0;
};

/// Counts the boxes that are ticked and can be unticked, which leaves out the installed voices, and
/// sums the sizes of their voices: the n-th input belongs to the n-th offered voice. An addition
/// that does not fit in 16 bits is passed over, and so is a box that has no voice in the sum.
Selection CountSelection(const std::vector<platform::InputState>& inputs,
                         const std::vector<clsVoice>& offered);

/// "1 voice, 75MB", "3 voices, 210MB"; empty when nothing is selected.
std::string StatusText(const Selection& selection, const TextLookup& text);

/// The same to be heard: "0 voices, 0MB" when nothing is selected, since silence says nothing.
std::string SpokenStatusText(const Selection& selection, const TextLookup& text);
