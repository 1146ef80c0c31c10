// The catalogue, from its bytes to the page and back to a queue. The input:
//
//     sv|Daniel|Julie|AB12        interface language, default voices, codes of installed products
//     12|40                       ids that an earlier run queued
//     Daniel Voice|English (UK)|12|75000000|AB12
//                                 products: name, language, id, size, code, type
//
// The catalogue may also stand there as it is.
//
// SPDX-License-Identifier: MIT
#include <algorithm>
#include <array>
#include <optional>
#include <string>
#include <vector>

#include "catalogue/catalogue_reader.h"
#include "catalogue/install_queue.h"
#include "catalogue/page_builder.h"
#include "catalogue/selection_status.h"
#include "catalogue/voice_names.h"
#include "core/attempt.h"
#include "core/text.h"
#include "platform/documents/xml.h"
#include "platform/system/text_order.h"
#include "platform/system/windows_installer.h"
#include "tests/fake_platform/fake.h"
#include "tests/fuzz/documents.h"
#include "tests/fuzz/page.h"
#include "tests/fuzz/target.h"
#include "tests/fuzz/xml_text.h"

namespace {

using fuzz::Require;

struct Setting {
  std::string language;
  std::array<std::string, 2> defaultVoices;
  std::vector<std::string> queued;
  /// From lines, and so a document that can be loaded.
  bool catalogueIsMade = false;
};

std::string TakeField(std::string_view& line) { return fuzz::Clean(fuzz::TakeUpTo(line, "|")); }

/// Also tells the fake installer what is installed.
Setting TakeSetting(std::string_view& input) {
  Setting setting;
  std::string_view line = fuzz::TakeLine(input);
  setting.language = TakeField(line);
  for (std::string& name : setting.defaultVoices) name = TakeField(line);
  auto& world = fake::TheWorld();
  world.installerQuestions.clear();
  world.installedProducts->clear();
  while (!line.empty()) {
    clsVoice voice;
    voice.SetProductCode(TakeField(line));
    world.installedProducts->insert({voice.ProductCode(), "1.0"});
  }
  line = fuzz::TakeLine(input);
  while (!line.empty()) setting.queued.push_back(TakeField(line));
  return setting;
}

std::string Element(const std::string& name, std::string_view text) {
  return "<" + name + ">" + fuzz::Escaped(text) + "</" + name + ">";
}

/// "~" stands for an element that is absent. What a line does not get to is empty, or as it mostly
/// is: steps that fail take their time, and random lines are short.
std::string ProductOf(std::string_view line) {
  std::string product = "<product>";
  for (const char* child : {"name", "language", "id", "size", "productcode", "producttype"}) {
    const bool isThere = !line.empty();
    std::string text = TakeField(line);
    if (text == "~") continue;
    if (!isThere && child == std::string_view("size")) text = "9000000";
    if (!isThere && child == std::string_view("producttype")) text = "Windows Voices";
    product += Element(child, text);
  }
  return product + "<link/></product>";
}

std::string CatalogueOf(std::string_view lines) {
  if (fuzz::IsDocument(lines)) return std::string(lines);
  std::string catalogue = "<catalogue>";
  // More of them would show nothing else and take their time.
  for (int products = 0; products < 6 && !lines.empty(); ++products) {
    catalogue += ProductOf(fuzz::TakeLine(lines));
  }
  return catalogue + "</catalogue>";
}

std::string QueueOf(const std::vector<std::string>& ids) {
  std::string queue = "<queue>";
  for (const std::string& id : ids) queue += Element("item", id);
  return queue + "</queue>";
}

/// What may be shown of the catalogue, as libxml2 reads it, in the catalogue's order.
std::vector<std::string> ExpectedIds(const std::string& catalogue) {
  std::vector<std::string> ids;
  const fuzz::Document document = fuzz::ReadXml(catalogue);
  Require(document && !document->intSubset);
  for (xmlNode* product : fuzz::ChildrenOf(xmlDocGetRootElement(document.get()), "product")) {
    const auto types = fuzz::ChildrenOf(product, "producttype");
    const auto isVoice = [](xmlNode* type) { return fuzz::ContentOf(type) == "Windows Voices"; };
    if (std::ranges::none_of(types, isVoice)) continue;
    const auto names = fuzz::ChildrenOf(product, "name");
    if (!names.empty() &&
        core::UpperCase(fuzz::ContentOf(names.front())).find("DEMO") != std::string::npos) {
      continue;
    }
    const auto all = fuzz::ChildrenOf(product, "id");
    ids.emplace_back(all.empty() ? "" : core::Trim(fuzz::ContentOf(all.front()), core::kXmlBlanks));
  }
  return ids;
}

bool IsInstalled(const clsVoice& voice) {
  return !voice.ProductCode().empty() &&
         fake::TheWorld().installedProducts->contains(voice.ProductCode());
}

/// The records are the voices of the catalogue without the two that only Swedish users are offered,
/// in the order of their names.
void CheckRecords(const std::vector<clsVoice>& voices, const std::string& catalogue,
                  const Setting& setting) {
  std::vector<std::string> ids;
  for (const clsVoice& voice : voices) {
    ids.push_back(voice.ID);
    const bool isSwedish = voice.Name.find("Erik") != std::string::npos ||
                           voice.Name.find("Elin") != std::string::npos;
    Require(!isSwedish || setting.language == "sv" || IsInstalled(voice));
  }
  std::vector<std::string> expected = ExpectedIds(catalogue);
  std::ranges::sort(ids);
  std::ranges::sort(expected);
  Require(std::ranges::includes(expected, ids));
  Require(ids.size() == expected.size() || setting.language != "sv");
  Require(std::ranges::is_sorted(
      voices, {}, [](const clsVoice& voice) { return platform::SortKey(voice.Name); }));
}

/// Installed voices stand below, the others with a size are offered, and nothing else is on the
/// page.
void CheckBody(const std::vector<clsVoice>& voices, const VoicesPage& page,
               fuzz::PageReader& reader) {
  auto offered = page.offered.begin();
  std::string boxId;
  bool anyInstalled = false;
  for (const clsVoice& voice : voices) {
    if (IsInstalled(voice)) {
      anyInstalled = true;
      reader.TakeInstalled(boxId, voice.Name);
    } else if (voice.Size != 0) {
      Require(offered != page.offered.end() && offered->ID == voice.ID &&
              offered->Name == voice.Name && offered->Size == voice.Size);
      boxId = "check" + voice.ID;
      ++offered;
    }
  }
  Require(offered == page.offered.end());
  Require(page.anyVoiceInstalled == anyInstalled && reader.HasInstalled() == anyInstalled);
  reader.TakeEnd();
}

/// A voice is ticked as a default as long as none is installed, and as one that was queued.
void CheckTicks(const VoicesPage& page, const fuzz::PageReader& reader, const Setting& setting) {
  bool anyDefault = false;
  for (std::size_t i = 0; i < page.offered.size(); ++i) {
    const clsVoice& voice = page.offered.at(i);
    std::string name = voice.Name;
    const bool isDefault = !page.anyVoiceInstalled &&
                           std::ranges::count(setting.defaultVoices, CleanVoiceName(name)) > 0;
    anyDefault = anyDefault || isDefault;
    // An apostrophe makes the question for the id another one.
    if (voice.ID.find('\'') != std::string::npos) continue;
    const bool isQueued = std::ranges::any_of(setting.queued, [&](const std::string& id) {
      return core::Trim(id, core::kXmlBlanks) == voice.ID;
    });
    Require(reader.Ticks().at(i) == static_cast<int>(isDefault) + static_cast<int>(isQueued));
  }
  Require(reader.SaysWhyTicked() == anyDefault);
}

bool IsPlain(const clsVoice& voice) {
  return voice.Name.find_first_of("<&") == std::string::npos &&
         voice.ID.find_first_of("<&'") == std::string::npos;
}

/// What a browser makes of the page: a box for each offered voice, of the voice's id and ticked
/// where the page says so, then a disabled one for each installed voice; and beside each box its
/// name.
void CheckElements(const fuzz::Document& html, const std::vector<platform::InputState>& inputs,
                   const std::vector<clsVoice>& voices, const VoicesPage& page,
                   const std::vector<int>& ticks) {
  const auto installed = static_cast<std::size_t>(std::ranges::count_if(voices, IsInstalled));
  Require(inputs.size() == page.offered.size() + installed);
  const auto labels = fuzz::ElementsOf(html, "label");
  Require(labels.size() == inputs.size());
  for (std::size_t i = 0; i < inputs.size(); ++i) {
    const platform::InputState& input = inputs.at(i);
    Require(fuzz::AttributeOf(labels.at(i), "for") == input.id);
    Require(input.disabled == (i >= page.offered.size()));
    if (input.disabled) {
      Require(input.checked);
      continue;
    }
    const clsVoice& voice = page.offered.at(i);
    Require(input.id == "check" + voice.ID && input.checked == (ticks.at(i) > 0));
    Require(core::Trim(fuzz::ContentOf(labels.at(i)), core::kXmlBlanks) ==
            core::Trim(voice.Name, core::kXmlBlanks));
  }
}

/// As every reader of XML sees an id.
std::string AsRead(const std::string& id) {
  return core::ReplaceAll(core::ReplaceAll(id, "\r\n", "\n"), "\r", "\n");
}

bool IsNoText(const std::string& id) {
  return id.find_first_of("<&") != std::string::npos || id.find("]]>") != std::string::npos;
}

/// Whether the texts of `part` stand in `whole` in the same order.
bool IsPartOf(const std::vector<std::string>& part, const std::vector<std::string>& whole) {
  auto at = whole.begin();
  for (const std::string& text : part) {
    at = std::find(at, whole.end(), text);
    if (at == whole.end()) return false;
    ++at;
  }
  return true;
}

/// The sum of the megabytes that fit, and the ids that can be written, of what is ticked on the
/// page; whatever elements the names on it have brought along.
void CheckSelection(const std::vector<platform::InputState>& inputs, const VoicesPage& page) {
  const Selection selection = CountSelection(inputs, page.offered);
  const auto counts = [](const platform::InputState& input) {
    return input.checked && !input.disabled;
  };
  Require(selection.count == std::ranges::count_if(inputs, counts));
  Require(StatusText(selection, fuzz::SameText).empty() == (selection.count == 0));

  // Between all ticked and none ticked are pages on which a name has brought a box of its own
  // along.
  std::vector<std::string> surely;
  std::vector<std::string> perhaps;
  for (const clsVoice& voice : page.offered) {
    const auto belongs = [&](const platform::InputState& input) {
      return input.id == "check" + voice.ID && !input.disabled;
    };
    const auto boxes = std::ranges::count_if(inputs, belongs);
    const auto ticked = std::ranges::count_if(
        inputs, [&](const platform::InputState& input) { return belongs(input) && input.checked; });
    if (ticked > 0) perhaps.push_back(AsRead(voice.ID));
    if (ticked > 0 && ticked == boxes) surely.push_back(AsRead(voice.ID));
  }
  std::string text;
  const bool made = core::Attempt([&] { text = QueueText(inputs, page.offered); });
  const fuzz::Document queue = fuzz::ReadXml(text);
  if (!made || !queue) {
    Require(std::ranges::any_of(perhaps, IsNoText));
    return;
  }
  Require(std::ranges::none_of(surely, IsNoText));
  std::vector<std::string> items;
  for (xmlNode* item : fuzz::ChildrenOf(xmlDocGetRootElement(queue.get()), "item")) {
    items.push_back(fuzz::ContentOf(item));
  }
  Require(IsPartOf(items, perhaps) && IsPartOf(surely, items));
}

/// Absent where the catalogue cannot be loaded.
std::optional<std::vector<clsVoice>> VoicesOf(const std::string& catalogue, const Setting& setting,
                                              const platform::WindowsInstaller& installer) {
  platform::XmlNode root;
  const bool loaded =
      core::Attempt([&] { root = platform::ParseXml(catalogue).SelectSingleNode("*"); });
  Require(loaded || !setting.catalogueIsMade);
  if (!loaded) return std::nullopt;
  return ReadCatalogue(root, setting.language, &installer);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const platform::WindowsInstaller installer;
  std::string_view input = fuzz::Text(data, size);
  Setting setting = TakeSetting(input);
  setting.catalogueIsMade = !fuzz::IsDocument(input);
  const std::string catalogue = CatalogueOf(input);
  const auto voices = VoicesOf(catalogue, setting, installer);
  if (!voices) return 0;
  CheckRecords(*voices, catalogue, setting);

  const auto queue = setting.queued.empty()
                         ? platform::XmlNode()
                         : platform::ParseXml(QueueOf(setting.queued)).SelectSingleNode("*");
  const VoicesPage page = BuildPage(std::vector<clsVoice>(*voices), fuzz::SameText,
                                    setting.defaultVoices, queue, &installer);
  fuzz::PageReader reader(page);
  CheckBody(*voices, page, reader);
  CheckTicks(page, reader, setting);

  const fuzz::Document html = fuzz::ReadHtml("<!DOCTYPE html><html><body>" + page.body);
  const std::vector<platform::InputState> inputs = fuzz::InputsOf(html);
  if (std::ranges::all_of(*voices, IsPlain)) {
    CheckElements(html, inputs, *voices, page, reader.Ticks());
  }
  CheckSelection(inputs, page);
  return 0;
}
