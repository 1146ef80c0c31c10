// The voices page read byte by byte: nothing may stand in it but what its rules put there, and
// texts of the catalogue as they came.
//
// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "catalogue/page_builder.h"
#include "tests/fuzz/target.h"

namespace fuzz {

/// The texts of a page whose language has none: the keys themselves.
inline std::string SameText(const std::string& key) { return key; }

class PageReader {
 public:
  explicit PageReader(const VoicesPage& page) : mRest(page.body) {
    Take(
        "<h2 style='text-align:left;font-weight:normal;'>Available Voices</h2>\r\n"
        "<table width=\"100%\">\r\n");
    mSaysWhyTicked = TakeIf(
        "<p style='text-align:left;font-weight:normal;' id='defaultVoiceMessage'>"
        "Default voices info</p>\r\n");
    for (const clsVoice& voice : page.offered) TakeOffered(voice);
    Take("</table>\r\n<script>function Add(url) { window.location.href = url; }</script>");
    mHasInstalled =
        TakeIf("<h2 style=\"font-weight:normal\">Already Installed</h2><table width=\"100%\">");
  }

  /// How often each offered voice's box says that it is ticked.
  const std::vector<int>& Ticks() const { return mTicks; }
  bool SaysWhyTicked() const { return mSaysWhyTicked; }
  bool HasInstalled() const { return mHasInstalled; }

  /// The next row of the installed voices; the id is the one of the box above it.
  void TakeInstalled(const std::string& boxId, const std::string& name) {
    Take("<td><input type='checkbox' id='" + boxId + "' checked disabled>");
    TakeLabel(boxId, name);
    Take("</tr>\r\n");
  }

  void TakeEnd() {
    if (mHasInstalled) Take("</table>");
    Require(mRest.empty());
  }

 private:
  void TakeOffered(const clsVoice& voice) {
    const std::string id = "check" + voice.ID;
    Take("<tr><td><input type='checkbox' id='" + id + "'");
    int ticks = 0;
    while (TakeIf(" checked ")) ++ticks;
    mTicks.push_back(ticks);
    Take(">");
    TakeLabel(id, voice.Name);
    Take("<td align='right'>" + std::to_string(voice.Size) + "MB</a></td></tr>\r\n");
  }

  void TakeLabel(const std::string& id, const std::string& name) {
    Take("<td align='left'><label for='" + id + "'>" + name + "</label></td>");
  }

  void Take(std::string_view text) { Require(TakeIf(text)); }

  bool TakeIf(std::string_view text) {
    if (!mRest.starts_with(text)) return false;
    mRest.remove_prefix(text.size());
    return true;
  }

  std::string_view mRest;
  std::vector<int> mTicks;
  bool mSaysWhyTicked = false;
  bool mHasInstalled = false;
};

}  // namespace fuzz
