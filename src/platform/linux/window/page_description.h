// What assistive technology is told of a page beyond what the page says.
//
// SPDX-License-Identifier: MIT
#pragma once

#include <webkit2/webkit2.h>

#include <string>

namespace platform {

/// Names the boxes and what is busy, as platform/window/web_browser.h promises, in the page that
/// the view has just loaded.
void DescribePage(WebKitWebView* view, const std::string& busyText);

}  // namespace platform
