// The page file: a body in its frame, written to the user's application data and shown.
//
// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "platform/window/web_browser.h"

namespace modDisplayHTMLInWebbrowser {

/// Writes "index.htm" (UTF-16 little-endian with a byte-order mark, lines ended by CR LF) into
/// "Velor Software\VelorVoiceSetup" of the user's application data, creating both folders, and
/// navigates the browser to it. Where the file cannot be written the browser shows what is there.
void DisplayHTMLInWebbrowser(const std::string& body, platform::WebBrowser& browser);

}  // namespace modDisplayHTMLInWebbrowser
