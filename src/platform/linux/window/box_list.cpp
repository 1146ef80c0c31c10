// The style sheet and the script are the host's: the page's own scripts stay disabled. The page
// cannot change the functions that the script calls, since it runs in a script world of the host;
// but elements named like a property of the document hide that property, so functions of the
// document are called on its prototype.
//
// SPDX-License-Identifier: MIT
#include "platform/linux/window/box_list.h"

#include <string>

#include "platform/linux/window/browser_control.h"

namespace platform {
namespace {

/// In system colours, so that the page follows a dark desktop. A box is drawn here because the
/// engine's own has a border of 1.6 to 1 on white. The box fills the 28 pixels of its cell, and the
/// label its own cell, so that a click anywhere there reaches the box.
constexpr const char* kStyleSheet = R"(
  :root { color-scheme: light dark; }
  body { overflow-wrap: anywhere; }
  table { border-spacing: 0; }
  td { padding: 0; }
  td:first-child { width: 32px; }
  td[align=right] { width: 1px; padding-left: 8px; white-space: nowrap; }
  label { display: block; padding: 4px; line-height: 20px; }
  input[type=checkbox] {
    appearance: none; display: block; position: relative;
    width: 28px; height: 28px; margin: 0; scroll-margin: 32px;
  }
  input[type=checkbox]::before {
    content: ""; position: absolute; inset: 5px; border: 2px solid; border-radius: 4px;
  }
  input:checked::before { background: Highlight; border-color: Highlight; }
  input:checked::after {
    content: ""; position: absolute; left: 11px; top: 7px; width: 4px; height: 9px;
    border: solid HighlightText; border-width: 0 2px 2px 0; transform: rotate(45deg);
  }
  input:disabled { opacity: 0.5; }
  input:focus-visible { outline: 2px solid; outline-offset: -2px; border-radius: 6px; }
  @media (prefers-contrast: more) {
    input:checked::before { background: CanvasText; border-color: CanvasText; }
    input:checked::after { border-color: Canvas; }
  }
  @media (max-width: 160px) {
    body { padding: 4px !important; margin: 0; }
    h2 { font-size: 1.2em; margin: 4px 0; }
    td, td[align=right] { display: block; width: auto; padding: 0; white-space: normal; }
  }
)";

/// Strings are compared by their base letters. A collator does not see all accents of every script
/// as such, so marks are removed first.
constexpr const char* kScript = R"(
  var boxList = (() => {
    const find = selectors =>
        Array.from(Document.prototype.querySelectorAll.call(document, selectors));
    const findBoxes = () => find("input[type=checkbox]:enabled");
    const top = box => box.getBoundingClientRect().top;
    const order = new Intl.Collator("en", {sensitivity: "base", ignorePunctuation: true});
    const baseOf = text => Array.from(text.normalize("NFD").replace(/\p{M}/gu, ""));
    let focused = null;
    let typed = "";
    let typedAt = -Infinity;

    // What is above the first box and below the last one is shown with them.
    const show = (box, boxes) => {
      box.focus({preventScroll: true, focusVisible: true});
      if (box === boxes.at(0)) scrollTo(0, 0);
      if (box === boxes.at(-1)) scrollTo(0, document.documentElement.scrollHeight);
      box.scrollIntoView({block: "nearest"});
    };

    const pageFrom = (boxes, at, step) => {
      let to = at + step;
      while (boxes[to + step] &&
             Math.abs(top(boxes[to + step]) - top(boxes[at])) < 0.9 * innerHeight) to += step;
      return to;
    };

    const beginsWith = (box, typed) => {
      const name = baseOf(box.closest("tr")?.querySelector("label")?.textContent ?? "");
      return name.some((_, end) => order.compare(name.slice(0, end + 1).join(""), typed) === 0);
    };

    // One letter, also one typed again and again, goes to the next name; more letters may stay.
    const searchFrom = (boxes, at, event) => {
      typed = event.timeStamp - typedAt < 1000 ? typed + event.key : event.key;
      typedAt = event.timeStamp;
      const one = Array.from(typed).every(letter => letter === event.key);
      const beginning = baseOf(one ? event.key : typed).join("");
      const from = one ? at + 1 : at;
      return boxes.indexOf([...boxes.slice(from), ...boxes.slice(0, from)].find(
          box => beginsWith(box, beginning)));
    };

    const moveTo = (boxes, at, key) => {
      switch (key) {
        case "ArrowUp": return at - 1;
        case "ArrowDown": return at + 1;
        case "PageUp": return pageFrom(boxes, at, -1);
        case "PageDown": return pageFrom(boxes, at, 1);
        case "Home": return 0;
        case "End": return boxes.length - 1;
        case " ": return at;
      }
    };

    // Where the focus stays, the key keeps its usual function: space ticks, the others scroll.
    addEventListener("keydown", event => {
      const boxes = findBoxes();
      const at = Math.max(boxes.indexOf(focused), 0);
      // Backwards out of the page: the next Shift+Tab goes on from its end.
      if (event.code === "Tab" && event.shiftKey && at === 0) focused = null;
      if (event.ctrlKey || event.altKey || event.metaKey) return;
      if (event.target.localName !== "body" && !boxes.includes(event.target)) return;
      const isLetter = event.key !== " " && Array.from(event.key).length === 1;
      const box =
          boxes[isLetter ? searchFrom(boxes, at, event) : moveTo(boxes, at, event.key)];
      if (!box) return;
      if (!isLetter) typed = "";
      if (box !== event.target) event.preventDefault();
      show(box, boxes);
    });
    addEventListener("focusin", event => { focused = event.target; });
    addEventListener("resize", () => focused?.scrollIntoView({block: "nearest"}));

    return {
      enter(where) {
        const boxes = findBoxes();
        const stops = find("a[href], input, button")
            .filter(stop => !stop.disabled && stop.getClientRects().length > 0);
        const stop = {
          ticked: boxes.find(box => box.checked) ?? boxes[0],
          first: stops[0],
          focused: stops.includes(focused) ? focused : stops.at(-1)
        }[where];
        if (stop) show(stop, boxes);
      }
    };
  })();
)";

constexpr const char* NameOf(EnterAt where) {
  if (where == EnterAt::kTicked) return "ticked";
  return where == EnterAt::kFirst ? "first" : "focused";
}

}  // namespace

void AddBoxList(WebKitUserContentManager* manager) {
  WebKitUserStyleSheet* style =
      webkit_user_style_sheet_new(kStyleSheet, WEBKIT_USER_CONTENT_INJECT_TOP_FRAME,
                                  WEBKIT_USER_STYLE_LEVEL_USER, nullptr, nullptr);
  webkit_user_content_manager_add_style_sheet(manager, style);
  webkit_user_style_sheet_unref(style);
  WebKitUserScript* script = webkit_user_script_new_for_world(
      kScript, WEBKIT_USER_CONTENT_INJECT_TOP_FRAME, WEBKIT_USER_SCRIPT_INJECT_AT_DOCUMENT_START,
      kHostWorld, nullptr, nullptr);
  webkit_user_content_manager_add_script(manager, script);
  webkit_user_script_unref(script);
}

void EnterBoxList(WebKitWebView* view, EnterAt where) {
  const std::string script = std::string("boxList.enter('") + NameOf(where) + "')";
  webkit_web_view_evaluate_javascript(view, script.c_str(), -1, kHostWorld, nullptr, nullptr,
                                      nullptr, nullptr);
}

}  // namespace platform
