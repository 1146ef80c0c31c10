// From the downloaded catalogue to voice records: the first stop of a voice on its way to the
// queue. The next is page_builder.h.
//
// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

#include "catalogue/clsVoice.h"
#include "platform/documents/xml_list.h"
#include "platform/system/windows_installer.h"

/// What a document has to be asked for: of the `product` children of the root element, those of the
/// type "Windows Voices", and of them `name`, `language`, `id`, `size` (bytes), `productcode` and
/// `link`.
platform::XmlList CatalogueList();

/// The voices of the catalogue that may be shown, in the order in which people look for them.
///
/// `products` are the records of a CatalogueList. What a product lacks, or has malformed, leaves
/// its voice's member empty or 0. `installer` (null where there is none) is asked about each voice,
/// which remembers the answer. Demonstration products are left out, and so are the two Swedish
/// voices unless `interfaceLanguage` is "sv" or they are installed.
std::vector<clsVoice> ReadCatalogue(const std::vector<platform::XmlRecord>& products,
                                    const std::string& interfaceLanguage,
                                    const platform::WindowsInstaller* installer);
