// See modDisplayHTMLInWebbrowser.h.
//
// SPDX-License-Identifier: MIT
#include "app/modDisplayHTMLInWebbrowser.h"

#include "core/attempt.h"
#include "paths/modPath.h"
#include "platform/documents/files.h"

namespace modDisplayHTMLInWebbrowser {

using core::Attempt;

namespace {

/// The body's last line is the caller's to end. The byte-order mark alone tells the encoding.
std::string Page(const std::string& body) {
  return "<!DOCTYPE html>\r\n"
         "<html>\r\n"
         "<title>Downloads</title>\r\n"
         "<style>body { font-family:segoe ui, tahoma, arial; padding:20px; }</style>\r\n"
         "<body>\r\n" +
         body +
         "</body>\r\n"
         "</html>\r\n";
}

}  // namespace

void DisplayHTMLInWebbrowser(const std::string& body, platform::WebBrowser& browser) {
  std::string path = modPath::GetSpecialFolderPath(modPath::kUserApplicationData);
  for (const char* folder : {"\\Velor Software", "\\VelorVoiceSetup"}) {
    path += folder;
    Attempt([&] { platform::CreateFolder(path); });
  }
  path += "\\index.htm";
  Attempt([&] { platform::WriteUtf16File(path, Page(body)); });
  Attempt([&] { browser.Navigate(path); });
}

}  // namespace modDisplayHTMLInWebbrowser
