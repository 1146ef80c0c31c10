// The queue file. The first line of an input holds the ids of the offered voices, parted by "|", a
// "+" before those that are ticked. Alone it is saved as a queue, which must read back as what was
// ticked; whatever stands behind it is the queue file that an earlier run has left.
//
// SPDX-License-Identifier: MIT
#include <algorithm>
#include <optional>
#include <string>
#include <vector>

#include "catalogue/install_queue.h"
#include "catalogue/page_builder.h"
#include "core/attempt.h"
#include "core/text.h"
#include "platform/documents/xml_document.h"
#include "tests/fuzz/documents.h"
#include "tests/fuzz/page.h"
#include "tests/fuzz/target.h"
#include "tests/fuzz/xml_text.h"

namespace {

using fuzz::Require;

struct Voice {
  std::string id;
  bool ticked = false;
};

/// Ids as a catalogue has them: without blanks at their ends.
std::vector<Voice> TakeVoices(std::string_view line) {
  std::vector<Voice> voices;
  // More of them would show nothing else and take their time.
  while (!line.empty() && voices.size() < 6) {
    std::string_view text = fuzz::TakeUpTo(line, "|");
    const bool ticked = text.starts_with('+');
    if (ticked) text.remove_prefix(1);
    voices.push_back({std::string(core::Trim(fuzz::Clean(text), core::kXmlBlanks)), ticked});
  }
  return voices;
}

std::vector<clsVoice> Records(const std::vector<Voice>& voices) {
  std::vector<clsVoice> records;
  for (const Voice& voice : voices) {
    clsVoice& record = records.emplace_back();
    record.ID = voice.id;
    record.Name = "Voice";
    record.Size = 1;
  }
  return records;
}

/// Which of the voices are ticked on the page that is made with this queue.
std::vector<int> TicksWith(const std::string& queue, const std::vector<Voice>& voices) {
  platform::XmlDocument document;
  document.LoadXml(queue);
  const auto root =
      document.ParseErrorCode() == 0 ? document.DocumentElement() : platform::XmlNode();
  const VoicesPage page = BuildPage(Records(voices), fuzz::SameText, {"", ""}, root, nullptr);
  Require(page.offered.size() == voices.size());
  fuzz::PageReader reader(page);
  reader.TakeEnd();
  return reader.Ticks();
}

/// Whether a text can stand in a document as it is.
bool HasMarkup(const std::string& text) { return text.find_first_of("<&") != std::string::npos; }

/// As every reader of XML sees them.
std::string WithLineFeeds(const std::string& text) {
  return core::ReplaceAll(core::ReplaceAll(text, "\r\n", "\n"), "\r", "\n");
}

/// Of several boxes with one id the first counts.
bool IsTicked(const std::vector<Voice>& voices, const std::string& id) {
  return std::ranges::find(voices, id, &Voice::id)->ticked;
}

/// The queue holds the ids that are ticked, in their order and nothing else; where one of them is
/// no text there is no queue at all. The next run ticks the same voices.
void CheckSaving(const std::vector<Voice>& voices) {
  std::vector<platform::InputState> inputs;
  std::vector<std::string> expected;
  for (const Voice& voice : voices) {
    inputs.push_back({"check" + voice.id, voice.ticked, false});
    if (IsTicked(voices, voice.id)) expected.push_back(voice.id);
  }
  std::string queue;
  const bool made = core::Attempt([&] { queue = QueueText(inputs, Records(voices)); });
  const fuzz::Document document = fuzz::ReadXml(queue);
  const bool loads = made && document;
  Require(loads ==
          (std::ranges::none_of(expected, HasMarkup) && queue.find("]]>") == std::string::npos));
  if (!loads) return;

  std::vector<std::string> items;
  for (xmlNode* item : fuzz::ChildrenOf(xmlDocGetRootElement(document.get()), "item")) {
    Require(!item->children || (item->children->type == XML_TEXT_NODE && !item->children->next));
    items.push_back(fuzz::ContentOf(item));
  }
  std::ranges::transform(expected, expected.begin(), WithLineFeeds);
  Require(items == expected);

  const std::vector<int> ticks = TicksWith(queue, voices);
  for (std::size_t i = 0; i < voices.size(); ++i) {
    const std::string& id = voices.at(i).id;
    if (id.find_first_of("'\r") != std::string::npos) continue;
    Require(ticks.at(i) == (std::ranges::count(expected, id) > 0 ? 1 : 0));
  }
}

/// Whether the queue file lists the voice: as the text of an item, or of an element `id` in one.
bool IsListed(const fuzz::Document& queue, const std::string& id) {
  const auto items = fuzz::ChildrenOf(xmlDocGetRootElement(queue.get()), "item");
  return std::ranges::any_of(items, [&](xmlNode* item) {
    if (core::Trim(fuzz::ContentOf(item), core::kXmlBlanks) == id) return true;
    const auto ids = fuzz::ChildrenOf(item, "id");
    return std::ranges::any_of(ids, [&](xmlNode* one) { return fuzz::ContentOf(one) == id; });
  });
}

/// What is ticked is what a document lists that any reader of XML takes for one, and that declares
/// no document type.
void CheckReading(const std::string& queue, const std::vector<Voice>& voices) {
  const std::vector<int> ticks = TicksWith(queue, voices);
  const fuzz::Document document = fuzz::ReadXml(queue);
  const bool isQueue = document && !document->intSubset;
  for (std::size_t i = 0; i < voices.size(); ++i) {
    const std::string& id = voices.at(i).id;
    if (!isQueue) Require(ticks.at(i) == 0);
    // An apostrophe makes the question for the id another one.
    if (!isQueue || id.find('\'') != std::string::npos) continue;
    // The program is stricter: it takes no undeclared prefix, and nothing behind the end.
    const bool loaded = core::Attempt([&] { platform::ParseXml(queue); });
    Require(ticks.at(i) == (loaded && IsListed(document, id) ? 1 : 0));
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  std::string_view input = fuzz::Text(data, size);
  const std::vector<Voice> voices = TakeVoices(fuzz::TakeLine(input));
  if (input.empty()) {
    CheckSaving(voices);
  } else {
    CheckReading(std::string(input), voices);
  }
  return 0;
}
