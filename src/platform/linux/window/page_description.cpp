// Names in the page, by its document: every text goes in as a text, so that none can become markup.
//
// SPDX-License-Identifier: MIT
#include "platform/linux/window/page_description.h"

#include <memory>

#include "platform/linux/window/browser_control.h"

namespace platform {
namespace {

struct ReleaseVariant {
  void operator()(GVariant* value) const { g_variant_unref(value); }
};

/// A label belongs to the first box with its id. Left at that, this box would be called by the
/// texts of all labels with the id, and toggled by a click on any of them. The functions are the
/// prototype's, since an element that is named as one of the document's stands before that one.
constexpr const char* kDescribe = R"(
  Document.prototype.getElementById.call(document, "busy")?.setAttribute("aria-label", busyText);
  for (const row of Document.prototype.querySelectorAll.call(document, "tr")) {
    const box = row.querySelector("input");
    const label = row.querySelector("label");
    if (!box || !label || label.control === box) continue;
    label.removeAttribute("for");
    box.setAttribute("aria-label", label.textContent);
  }
)";

}  // namespace

void DescribePage(WebKitWebView* view, const std::string& busyText) {
  GVariantDict arguments;
  g_variant_dict_init(&arguments, nullptr);
  g_variant_dict_insert(&arguments, "busyText", "s", busyText.c_str());
  // Ours to release: unlike others, this call takes over no new value.
  const std::unique_ptr<GVariant, ReleaseVariant> values(
      g_variant_ref_sink(g_variant_dict_end(&arguments)));
  webkit_web_view_call_async_javascript_function(view, kDescribe, -1, values.get(), kHostWorld,
                                                 nullptr, nullptr, nullptr, nullptr);
}

}  // namespace platform
