// From voice records to the page's body: one check box for each voice that can still be installed,
// and the installed ones below, greyed. The page is shown by app/; its ticks are read back by
// selection_status.h and install_queue.h.
//
// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <string>
#include <vector>

#include "catalogue/clsVoice.h"
#include "catalogue/text_lookup.h"
#include "platform/documents/xml.h"
#include "platform/system/windows_installer.h"

/// The id of the check box of an offered voice: "check12" for the voice with the id 12.
std::string CheckboxId(const clsVoice& voice);

struct VoicesPage {
  /// HTML, lines ended by CR LF, without the page's frame.
  std::string body;
  /// The voices that have a check box to tick, in the order of the boxes: the n-th voice belongs to
  /// the n-th box of the page.
  std::vector<clsVoice> offered;
  /// Whether one of `voices` is installed.
  bool anyVoiceInstalled = false;
};

/// `voices` are sorted as ReadCatalogue returns them. `defaultVoices`: the bare names
/// (CleanVoiceName) of the voices that Parvix speaks with, ticked from the start as long as no
/// voice is installed. `queue`: the root element of an earlier run's queue, whose voices are ticked
/// too; no node when there is none. `installer` is null where there is none.
VoicesPage BuildPage(std::vector<clsVoice> voices, const TextLookup& text,
                     const std::array<std::string, 2>& defaultVoices,
                     const platform::XmlNode& queue, const platform::WindowsInstaller* installer);
