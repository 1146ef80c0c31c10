// See catalogue_reader.h.
//
// SPDX-License-Identifier: MIT
#include "catalogue/catalogue_reader.h"

#include <algorithm>
#include <cmath>

#include "catalogue/voice_names.h"
#include "core/attempt.h"
#include "core/text.h"
#include "platform/text_order.h"

namespace {

using core::Attempt;
using core::AttemptOr;
using platform::XmlNode;

/// Throws when the product has no such child.
std::string ChildText(const XmlNode& product, const std::string& child) {
  return product.SelectSingleNode(child).Text();
}

/// Whole megabytes, halves to the even neighbour: 1,500,000 bytes are 2, and so are 2,500,000. Any
/// 32-bit number of bytes fits the result.
std::int16_t MegabytesFromBytes(const std::string& bytes) {
  return static_cast<std::int16_t>(std::nearbyint(core::Int32FromText(bytes) / 1'000'000.0));
}

bool IsDemonstration(const XmlNode& product) {
  return AttemptOr(false,
                   [&] { return core::ContainsIgnoringCase(ChildText(product, "name"), "demo"); });
}

clsVoice ReadProduct(const XmlNode& product) {
  clsVoice voice;
  Attempt([&] { voice.Name = WithoutVendorWords(ChildText(product, "name")); });
  Attempt([&] { voice.Name = ChildText(product, "language") + " " + voice.Name; });
  Attempt([&] { voice.ID = ChildText(product, "id"); });
  Attempt([&] { voice.Size = MegabytesFromBytes(ChildText(product, "size")); });
  Attempt([&] { voice.SetProductCode(ChildText(product, "productcode")); });
  Attempt([&] { voice.Link = ChildText(product, "link"); });
  return voice;
}

/// These two are offered to Swedish users alone; whoever has them goes on seeing them.
bool IsSwedishOnly(const clsVoice& voice) {
  return voice.Name.find("Erik") != std::string::npos ||
         voice.Name.find("Elin") != std::string::npos;
}

}  // namespace

std::vector<clsVoice> ReadCatalogue(const XmlNode& catalogue, const std::string& interfaceLanguage,
                                    const platform::WindowsInstaller* installer) {
  std::vector<clsVoice> voices;
  for (const XmlNode& product : catalogue.SelectNodes("product[producttype='Windows Voices']")) {
    if (IsDemonstration(product)) continue;
    clsVoice voice = ReadProduct(product);
    if (IsSwedishOnly(voice) && interfaceLanguage != "sv" &&
        voice.IsInstalled(installer) != InstallState::kInstalled) {
      continue;
    }
    voices.push_back(std::move(voice));
  }
  std::ranges::stable_sort(voices, [](const clsVoice& left, const clsVoice& right) {
    return platform::CompareText(left.Name, right.Name) < 0;
  });
  return voices;
}
