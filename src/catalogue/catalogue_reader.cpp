// See catalogue_reader.h.
//
// SPDX-License-Identifier: MIT
#include "catalogue/catalogue_reader.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <string_view>
#include <utility>

#include "catalogue/voice_names.h"
#include "core/attempt.h"
#include "core/text.h"
#include "platform/system/text_order.h"

namespace {

using core::Attempt;
using platform::XmlRecord;

/// Where a record has the texts that CatalogueList names.
enum Field : std::size_t { kName, kLanguage, kId, kSize, kProductCode, kLink };

/// Whole megabytes, halves to the even neighbour: 1,500,000 bytes are 2, and so are 2,500,000. Any
/// 32-bit number of bytes fits the result.
std::int16_t MegabytesFromBytes(const std::string& bytes) {
  return static_cast<std::int16_t>(std::nearbyint(core::Int32FromText(bytes) / 1'000'000.0));
}

bool IsDemonstration(const XmlRecord& product) {
  const auto& name = product.at(kName);
  return name && core::ContainsIgnoringCase(*name, "demo");
}

clsVoice ReadProduct(const XmlRecord& product) {
  // Throws when the product has no such child.
  const auto text = [&](Field field) -> const std::string& { return product.at(field).value(); };
  clsVoice voice;
  Attempt([&] { voice.Name = WithoutVendorWords(text(kName)); });
  Attempt([&] { voice.Name = text(kLanguage) + " " + voice.Name; });
  Attempt([&] { voice.ID = text(kId); });
  Attempt([&] { voice.Size = MegabytesFromBytes(text(kSize)); });
  Attempt([&] { voice.SetProductCode(text(kProductCode)); });
  Attempt([&] { voice.Link = text(kLink); });
  return voice;
}

/// These two are offered to Swedish users alone; whoever has them goes on seeing them.
bool IsSwedishOnly(const clsVoice& voice) {
  return voice.Name.find("Erik") != std::string::npos ||
         voice.Name.find("Elin") != std::string::npos;
}

/// Equal names stay in their order.
std::vector<clsVoice> SortedByName(std::vector<clsVoice> voices) {
  // What a comparison looks at is worked out once a name, and lies in one piece: of a long
  // catalogue every text that lies apart would be fetched from memory. Voices are moved once.
  struct Key {
    std::size_t begin;  // in `keys`
    std::size_t size;
    std::size_t voice;
  };
  std::string keys;
  std::vector<Key> order;
  order.reserve(voices.size());
  for (const clsVoice& voice : voices) {
    const std::string key = platform::SortKey(voice.Name);
    order.push_back({keys.size(), key.size(), order.size()});
    keys += key;
  }
  std::ranges::sort(order, {}, [&](const Key& key) {
    return std::pair(std::string_view(keys).substr(key.begin, key.size), key.voice);
  });
  std::vector<clsVoice> sorted;
  sorted.reserve(voices.size());
  for (const Key& key : order) sorted.push_back(std::move(voices[key.voice]));
  return sorted;
}

}  // namespace

platform::XmlList CatalogueList() {
  return {"product",
          "producttype",
          "Windows Voices",
          {"name", "language", "id", "size", "productcode", "link"}};
}

std::vector<clsVoice> ReadCatalogue(const std::vector<XmlRecord>& products,
                                    const std::string& interfaceLanguage,
                                    const platform::WindowsInstaller* installer) {
  std::vector<clsVoice> voices;
  voices.reserve(products.size());
  for (const XmlRecord& product : products) {
    if (IsDemonstration(product)) continue;
    clsVoice voice = ReadProduct(product);
    // The record remembers, and here it is at hand: asked in the order of names, a long catalogue
    // would be fetched into the cache once more.
    const bool isInstalled = voice.IsInstalled(installer) == InstallState::kInstalled;
    if (IsSwedishOnly(voice) && interfaceLanguage != "sv" && !isInstalled) continue;
    voices.push_back(std::move(voice));
  }
  return SortedByName(std::move(voices));
}
