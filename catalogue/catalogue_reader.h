// From the downloaded catalogue to voice records: the first stop of a voice on its way to the
// queue. The next is page_builder.h.
//
// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

#include "platform/windows_installer.h"
#include "platform/xml.h"
#include "voice/clsVoice.h"

/// The voices of the catalogue that may be shown, in the order in which people look for them.
///
/// `catalogue` is the root element: its `product` children of type "Windows Voices" are read, their
/// children `name`, `language`, `id`, `size` (bytes), `productcode` and `link` as text. What a
/// product lacks, or has malformed, leaves its record's member empty or 0. Demonstration products
/// are left out, and so are the two Swedish voices unless `interfaceLanguage` is "sv" or they are
/// installed: `installer` is asked about them; null where there is none.
std::vector<clsVoice> ReadCatalogue(const platform::XmlNode& catalogue,
                                    const std::string& interfaceLanguage,
                                    const platform::WindowsInstaller* installer);
