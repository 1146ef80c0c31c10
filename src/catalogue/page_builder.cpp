// See page_builder.h. Tags that look unclosed or out of place are kept as they are: every browser
// reads them well, and the page stays the same to the byte from version to version.
//
// SPDX-License-Identifier: MIT
#include "catalogue/page_builder.h"

#include <algorithm>
#include <unordered_set>

#include "catalogue/voice_names.h"
#include "core/attempt.h"

namespace {

using core::Attempt;
using platform::XmlNode;

/// The ids that an earlier run queued. An item lists an id as its own text, the form that this
/// program writes, or in an element `id`.
std::unordered_set<std::string> QueuedIds(const XmlNode& queue) {
  std::unordered_set<std::string> ids;
  if (!queue) return ids;
  Attempt([&] {
    for (const XmlNode& node : queue.SelectNodes("item | item/id")) ids.insert(node.Text());
  });
  return ids;
}

/// Whether the queue lists a voice. The prescribed query is "item[id='...']"; an id with an
/// apostrophe ends its literal, so that such an id is matched by what the query then means.
bool IsQueued(const XmlNode& queue, const std::unordered_set<std::string>& ids,
              const std::string& id) {
  if (id.find('\'') == std::string::npos) return ids.contains(id);
  return queue && core::AttemptOr(false, [&] {
           return static_cast<bool>(queue.SelectSingleNode("item[id='" + id + "']"));
         });
}

std::string Label(const std::string& checkboxId, const clsVoice& voice) {
  return "<td align='left'><label for='" + checkboxId + "'>" + voice.Name + "</label></td>";
}

std::string InstalledRow(const std::string& checkboxId, const clsVoice& voice) {
  return "<td><input type='checkbox' id='" + checkboxId + "' checked disabled>" +
         Label(checkboxId, voice) + "</tr>\r\n";
}

std::string OfferedRow(const std::string& checkboxId, const std::string& ticks,
                       const clsVoice& voice) {
  return "<tr><td><input type='checkbox' id='" + checkboxId + "'" + ticks + ">" +
         Label(checkboxId, voice) + "<td align='right'>" + std::to_string(voice.Size) +
         "MB</a></td></tr>\r\n";
}

bool IsDefault(const clsVoice& voice, const std::array<std::string, 2>& defaultVoices) {
  std::string name = voice.Name;
  return std::ranges::count(defaultVoices, CleanVoiceName(name)) > 0;
}

}  // namespace

std::string CheckboxId(const clsVoice& voice) { return "check" + voice.ID; }

VoicesPage BuildPage(std::vector<clsVoice> voices, const TextLookup& text,
                     const std::array<std::string, 2>& defaultVoices, const XmlNode& queue,
                     const platform::WindowsInstaller* installer) {
  const auto isInstalled = [&](clsVoice& voice) {
    return voice.IsInstalled(installer) == InstallState::kInstalled;
  };
  const std::unordered_set<std::string> queued = QueuedIds(queue);
  VoicesPage page;
  page.anyVoiceInstalled = std::ranges::any_of(voices, isInstalled);

  const std::string heading = "<h2 style='text-align:left;font-weight:normal;'>" +
                              text("Available Voices") + "</h2>\r\n<table width=\"100%\">\r\n";
  std::string note;  // why voices are ticked already
  std::string rows;
  std::string installedRows;
  // Rows of installed voices repeat the id of the offered voice before them: they are disabled and
  // never looked up, so an id of their own would be of no use.
  std::string lastCheckboxId;
  const auto addRow = [&](clsVoice& voice) {
    if (isInstalled(voice)) {
      installedRows += InstalledRow(lastCheckboxId, voice);
      return;
    }
    if (voice.Size == 0) return;  // nothing to download is nothing to offer

    lastCheckboxId = CheckboxId(voice);
    std::string ticks;
    if (!page.anyVoiceInstalled && IsDefault(voice, defaultVoices)) {
      ticks += " checked ";
      if (note.empty() && heading.find("defaultVoiceMessage") == std::string::npos) {
        note = "<p style='text-align:left;font-weight:normal;' id='defaultVoiceMessage'>" +
               text("Default voices info") + "</p>\r\n";
      }
    }
    if (IsQueued(queue, queued, voice.ID)) ticks += " checked ";
    rows += OfferedRow(lastCheckboxId, ticks, voice);
    page.offered.push_back(std::move(voice));
  };
  for (clsVoice& voice : voices) Attempt([&] { addRow(voice); });

  std::string tail =
      "</table>\r\n<script>function Add(url) { window.location.href = url; }</script>";
  if (!installedRows.empty()) {
    tail += "<h2 style=\"font-weight:normal\">" + text("Already Installed") +
            "</h2><table width=\"100%\">" + installedRows + "</table>";
  }
  page.body = heading + note + rows + tail;
  return page;
}
