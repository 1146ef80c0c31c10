// From the downloaded catalogue to voice records: the first stop of a voice on its way to the
// queue. The next is page_builder.h.
//
// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

#include "catalogue/clsVoice.h"
#include "platform/documents/xml.h"
#include "platform/system/windows_installer.h"

/// The voices of the catalogue that may be shown, sorted by name without regard to letter case;
/// equal names keep the order of the catalogue.
///
/// `catalogue` is the root element; read are its `product` children of the type "Windows Voices",
/// and of them `name`, `language`, `id`, `size` (bytes), `productcode` and `link`. What a product
/// lacks, or has malformed, leaves its voice's member empty or 0. Demonstration products are left
/// out, and so are the two Swedish voices unless `interfaceLanguage` is "sv" or they are installed.
/// `installer` is null where there is none. Throws std::logic_error for no node.
std::vector<clsVoice> ReadCatalogue(const platform::XmlNode& catalogue,
                                    const std::string& interfaceLanguage,
                                    const platform::WindowsInstaller* installer);
