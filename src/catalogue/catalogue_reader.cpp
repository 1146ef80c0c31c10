// See catalogue_reader.h.
//
// SPDX-License-Identifier: MIT
#include "catalogue/catalogue_reader.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "catalogue/voice_names.h"
#include "core/attempt.h"
#include "core/text.h"
#include "platform/system/text_order.h"

namespace {

using core::Attempt;
using platform::XmlNode;

/// Whole megabytes, halves to the even neighbour: 1,500,000 bytes are 2, and so are 2,500,000. Any
/// 32-bit number of bytes fits the result.
std::int16_t MegabytesFromBytes(const std::string& bytes) {
  return static_cast<std::int16_t>(std::nearbyint(core::Int32FromText(bytes) / 1'000'000.0));
}

bool IsDemonstration(const XmlNode& product) {
  return core::ContainsIgnoringCase(product.ChildText("name").value_or(""), "demo");
}

clsVoice ReadProduct(const XmlNode& product) {
  // Throws when the product has no such child.
  const auto field = [&](const char* child) { return product.ChildText(child).value(); };
  clsVoice voice;
  Attempt([&] { voice.Name = WithoutVendorWords(field("name")); });
  Attempt([&] { voice.Name = field("language") + " " + voice.Name; });
  Attempt([&] { voice.ID = field("id"); });
  Attempt([&] { voice.Size = MegabytesFromBytes(field("size")); });
  Attempt([&] { voice.SetProductCode(field("productcode")); });
  Attempt([&] { voice.Link = field("link"); });
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
  using KeyAndVoice = std::pair<std::string, clsVoice>;
  std::vector<KeyAndVoice> sorted;
  for (const XmlNode& product : catalogue.SelectNodes("product[producttype='Windows Voices']")) {
    Attempt([&] {
      if (IsDemonstration(product)) return;
      clsVoice voice = ReadProduct(product);
      if (IsSwedishOnly(voice) && interfaceLanguage != "sv" &&
          voice.IsInstalled(installer) != InstallState::kInstalled) {
        return;
      }
      auto key = core::AttemptOr(std::string(), [&] { return platform::SortKey(voice.Name); });
      sorted.emplace_back(std::move(key), std::move(voice));
    });
  }
  std::ranges::stable_sort(sorted, {}, &KeyAndVoice::first);
  std::vector<clsVoice> voices;
  for (KeyAndVoice& one : sorted) voices.push_back(std::move(one.second));
  return voices;
}
