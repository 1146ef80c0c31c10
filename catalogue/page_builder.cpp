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

namespace {

using core::Attempt;
using platform::XmlNode;

constexpr std::string_view kDefaultVoiceMessage = "defaultVoiceMessage";

/// The ids that an earlier run queued.
class QueuedIds {
 public:
  explicit QueuedIds(const XmlNode& queue) : mQueue(queue) {
    Attempt([&] {
      for (const XmlNode& item : mQueue.SelectNodes("item")) mItemTexts.insert(item.Text());
    });
  }

  /// An item lists an id as its own text, the form that this program writes, or in an element `id`.
  /// Throws for an id that cannot stand in the query, and when there is no queue.
  bool Contains(const std::string& id) const {
    return mQueue.SelectSingleNode("item[id='" + id + "']") || mItemTexts.contains(id);
  }

 private:
  XmlNode mQueue;
  std::unordered_set<std::string> mItemTexts;
};

std::string Label(const std::string& checkboxId, const std::string& name) {
  return "<td align='left'><label for='" + checkboxId + "'>" + name + "</label></td>";
}

std::string InstalledRow(const std::string& checkboxId, const clsVoice& voice) {
  return "<td><input type='checkbox' id='" + checkboxId + "' checked disabled>" +
         Label(checkboxId, voice.Name) + "</tr>\r\n";
}

std::string OfferedRow(const std::string& checkboxId, const std::string& ticks,
                       const clsVoice& voice) {
  return "<tr><td><input type='checkbox' id='" + checkboxId + "'" + ticks + ">" +
         Label(checkboxId, voice.Name) + "<td align='right'>" + std::to_string(voice.Size) +
         "MB</a></td></tr>\r\n";
}

bool IsDefault(const clsVoice& voice, const std::array<std::string, 2>& defaultVoices) {
  std::string name = voice.Name;
  return std::ranges::count(defaultVoices, CleanVoiceName(name)) > 0;
}

/// Why voices are ticked already, said once and above the rows.
void AddDefaultVoicesInfo(std::string& body, const TextLookup& text) {
  if (body.find(kDefaultVoiceMessage) != std::string::npos) return;
  body += "<p style='text-align:left;font-weight:normal;' id='";
  body += kDefaultVoiceMessage;
  body += "'>" + text("Default voices info") + "</p>\r\n";
}

}  // namespace

std::string CheckboxId(const clsVoice& voice) { return "check" + voice.ID; }

VoicesPage BuildPage(std::vector<clsVoice> voices, const TextLookup& text,
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
  std::string offeredRows;
  std::string installedRows;
  // Rows of installed voices repeat the id of the offered voice before them: they are disabled and
  // never looked up, so an id of their own would serve nobody.
  std::string lastCheckboxId;
  for (clsVoice& voice : voices) {
    if (isInstalled(voice)) {
      installedRows += InstalledRow(lastCheckboxId, voice);
      continue;
    }
    if (voice.Size == 0) continue;  // nothing to download is nothing to offer

    lastCheckboxId = CheckboxId(voice);
    std::string ticks;
    if (!page.anyVoiceInstalled && IsDefault(voice, defaultVoices)) {
      ticks += " checked ";
      AddDefaultVoicesInfo(page.body, text);
    }
    Attempt([&] {
      if (queued.Contains(voice.ID)) ticks += " checked ";
    });
    offeredRows += OfferedRow(lastCheckboxId, ticks, voice);
    page.offered.push_back(std::move(voice));
  }

  page.body += offeredRows;
  page.body += "</table>\r\n<script>function Add(url) { window.location.href = url; }</script>";
  if (!installedRows.empty()) {
    page.body += "<h2 style=\"font-weight:normal\">" + text("Already Installed") +
                 "</h2><table width=\"100%\">" + installedRows + "</table>";
  }
  return page;
}
