// The last stop of a voice: the queue that is handed to the installer program.
//
// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

#include "catalogue/clsVoice.h"
#include "platform/window/web_browser.h"

/// The queue document's text: the ids of the voices whose boxes are ticked, in the order of
/// `offered`, for example "<queue><item>12</item><item>40</item></queue>". No declaration and no
/// white space: the installer reads it this way. A voice is not queued whose box is not among
/// `inputs`, or stands there more than once and not always ticked. Throws std::runtime_error for
/// a ticked voice whose id holds "<" or "&": then no queue is written.
std::string QueueText(const std::vector<platform::InputState>& inputs,
                      const std::vector<clsVoice>& offered);
