// The check boxes of a page as a list: style sheet, keyboard navigation, initial focus.
//
// SPDX-License-Identifier: MIT
#pragma once

#include <webkit2/webkit2.h>

namespace platform {

enum class EnterAt {
  kTicked,   // the first ticked box, otherwise the first box; a page without boxes stays as it is
  kFirst,    // the first element in the tab order
  kFocused,  // the element that had the focus last, otherwise the last one in the tab order
};

/// Adds the host's style sheet and key handler to all pages that a view with this manager shows.
void AddBoxList(WebKitUserContentManager* manager);

/// Moves the page's focus and scrolls to it. The view itself does not take the keyboard.
void EnterBoxList(WebKitWebView* view, EnterAt where);

}  // namespace platform
