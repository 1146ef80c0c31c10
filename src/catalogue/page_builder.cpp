// See page_builder.h. Tags that look unclosed or out of place are kept as they are: every browser
// reads them well, and the page stays the same to the byte from version to version.
//
// SPDX-License-Identifier: MIT
#include "catalogue/page_builder.h"

#include <algorithm>
#include <string_view>
#include <unordered_set>

#include "catalogue/voice_names.h"
#include "core/attempt.h"
#include "core/text.h"

namespace {

using core::Attempt;
using platform::XmlNode;

// Bytes of an offered voice's row, rather too many: memory that is not needed is never touched.
constexpr std::size_t kUsualRow = 256;

constexpr std::string_view kDefaultVoiceMessage = "defaultVoiceMessage";

/// The ids that an earlier run queued.
class QueuedIds {
 public:
  explicit QueuedIds(const XmlNode& queue) : mQueue(queue) {
    if (!mQueue) return;
    Attempt([&] { mTexts = TextsOf("item"); });
    Attempt([&] { mIds = TextsOf("item/id"); });
  }

  /// An item lists an id as its own text, the form that this program writes, or in an element `id`.
  /// Throws for an id that cannot stand in the query.
  bool Contains(const std::string& id) const {
    if (!mQueue) return false;
    // An id with an apostrophe makes the query another one, or none.
    if (id.find('\'') != std::string::npos) return IsSelected(id) || mTexts.contains(id);
    if (mTexts.contains(id)) return true;
    // The query compares an element's text as it is written, and is only put where it may succeed.
    return mIds.contains(std::string(core::Trim(id, core::kXmlBlanks))) && IsSelected(id);
  }

 private:
  std::unordered_set<std::string> TextsOf(const std::string& xpath) const {
    std::unordered_set<std::string> texts;
    for (const XmlNode& node : mQueue.SelectNodes(xpath)) texts.insert(node.Text());
    return texts;
  }

  bool IsSelected(const std::string& id) const {
    return static_cast<bool>(mQueue.SelectSingleNode("item[id='" + id + "']"));
  }

  XmlNode mQueue;
  std::unordered_set<std::string> mTexts;
  std::unordered_set<std::string> mIds;
};

void AddLabel(std::string& rows, std::string_view checkboxId, const clsVoice& voice) {
  core::Append(rows,
               {"<td align='left'><label for='", checkboxId, "'>", voice.Name, "</label></td>"});
}

void AddInstalledRow(std::string& rows, std::string_view checkboxId, const clsVoice& voice) {
  core::Append(rows, {"<td><input type='checkbox' id='", checkboxId, "' checked disabled>"});
  AddLabel(rows, checkboxId, voice);
  rows += "</tr>\r\n";
}

void AddOfferedRow(std::string& rows, std::string_view checkboxId, std::string_view ticks,
                   const clsVoice& voice) {
  core::Append(rows, {"<tr><td><input type='checkbox' id='", checkboxId, "'", ticks, ">"});
  AddLabel(rows, checkboxId, voice);
  core::Append(rows, {"<td align='right'>", std::to_string(voice.Size), "MB</a></td></tr>\r\n"});
}

bool IsDefault(const clsVoice& voice, const std::array<std::string, 2>& defaultVoices) {
  std::string name = voice.Name;
  return std::ranges::count(defaultVoices, CleanVoiceName(name)) > 0;
}

/// Why voices are ticked already, said once and above the rows: at the end of the first `head`
/// bytes, which it lengthens.
void AddDefaultVoicesInfo(std::string& body, std::size_t& head, const TextLookup& text) {
  if (std::string_view(body).substr(0, head).find(kDefaultVoiceMessage) != std::string::npos) {
    return;
  }
  std::string info;
  core::Append(info, {"<p style='text-align:left;font-weight:normal;' id='", kDefaultVoiceMessage,
                      "'>", text("Default voices info"), "</p>\r\n"});
  body.insert(head, info);
  head += info.size();
}

}  // namespace

std::string CheckboxId(const clsVoice& voice) { return "check" + voice.ID; }

VoicesPage BuildPage(std::vector<clsVoice>&& voices, const TextLookup& text,
                     const std::array<std::string, 2>& defaultVoices, const XmlNode& queue,
                     const platform::WindowsInstaller* installer) {
  const auto isInstalled = [&](clsVoice& voice) {
    return voice.IsInstalled(installer) == InstallState::kInstalled;
  };
  VoicesPage page;
  page.body = "<h2 style='text-align:left;font-weight:normal;'>" + text("Available Voices") +
              "</h2>\r\n<table width=\"100%\">\r\n";
  page.anyVoiceInstalled = std::ranges::any_of(voices, isInstalled);

  const QueuedIds queued(queue);
  page.offered.reserve(voices.size());
  std::size_t head = page.body.size();  // of what stands above the rows
  page.body.reserve(head + voices.size() * kUsualRow);
  std::string installedRows;
  // Rows of installed voices repeat the id of the offered voice before them: they are disabled and
  // never looked up, so an id of their own would serve nobody.
  std::string lastCheckboxId;
  for (clsVoice& voice : voices) {
    if (isInstalled(voice)) {
      AddInstalledRow(installedRows, lastCheckboxId, voice);
      continue;
    }
    if (voice.Size == 0) continue;  // nothing to download is nothing to offer

    lastCheckboxId = CheckboxId(voice);
    std::string ticks;
    if (!page.anyVoiceInstalled && IsDefault(voice, defaultVoices)) {
      ticks += " checked ";
      AddDefaultVoicesInfo(page.body, head, text);
    }
    Attempt([&] {
      if (queued.Contains(voice.ID)) ticks += " checked ";
    });
    AddOfferedRow(page.body, lastCheckboxId, ticks, voice);
    page.offered.push_back(std::move(voice));
  }

  page.body += "</table>\r\n<script>function Add(url) { window.location.href = url; }</script>";
  if (!installedRows.empty()) {
    core::Append(page.body, {"<h2 style=\"font-weight:normal\">", text("Already Installed"),
                             "</h2><table width=\"100%\">", installedRows, "</table>"});
  }
  return page;
}
