// The tables are for layout: a screen reader would speak of columns and rows at each box. The roles
// are set before the page is laid out: the engine would replace the accessibles of a table that
// becomes a list later, and leave the boxes with parents that no longer exist.
//
// SPDX-License-Identifier: MIT
#include "platform/linux/window/page_roles.h"

#include "platform/linux/window/browser_control.h"

namespace platform {
namespace {

constexpr const char* kScript = R"(
  new MutationObserver(() => {
    let heading;
    for (const part of Document.prototype.querySelectorAll.call(document, "h2, table")) {
      if (part.localName === "h2") {
        heading = part;
        continue;
      }
      part.setAttribute("role", "list");
      part.ariaLabelledByElements = [heading];
      for (const body of part.tBodies) body.setAttribute("role", "presentation");
      for (const row of part.rows) {
        row.setAttribute("role", "listitem");
        for (const cell of row.cells) cell.setAttribute("role", "presentation");
        const box = row.querySelector("input");
        if (box) box.ariaDescribedByElements = [row.cells[2] ?? heading];
      }
    }
  }).observe(document, {childList: true, subtree: true});
)";

}  // namespace

void AddPageRoles(WebKitUserContentManager* manager) {
  WebKitUserScript* script = webkit_user_script_new_for_world(
      kScript, WEBKIT_USER_CONTENT_INJECT_TOP_FRAME, WEBKIT_USER_SCRIPT_INJECT_AT_DOCUMENT_START,
      kHostWorld, nullptr, nullptr);
  webkit_user_content_manager_add_script(manager, script);
  webkit_user_script_unref(script);
}

}  // namespace platform
