// Loads a document as the program loads its catalogue, without its window, and says "failure" or
// "page" and the names of the voices, percent-encoded. Its argument is the address.
//
// SPDX-License-Identifier: MIT
#include <windows.h>

#include <iostream>
#include <string>

#include "catalogue/catalogue_reader.h"
#include "platform/documents/xml_document.h"
#include "platform/win32/com.h"
#include "platform/window/event_loop.h"
#include "tests/e2e/win32/encoded.h"

namespace {

// Events that came while the last ones were handled wake nobody.
constexpr DWORD kLookEvery = 10;

void LoadAndSay(const std::string& address) {
  bool told = false;
  platform::XmlDocument document;
  document.OnReadyStateChange([&] { told = true; });
  document.Load(address);
  while (!told) {
    MsgWaitForMultipleObjects(0, nullptr, FALSE, kLookEvery, QS_ALLINPUT);
    platform::ProcessPendingEvents();
  }
  if (document.ParseErrorCode() != 0) {
    std::cout << "failure";
    return;
  }
  std::cout << "page";
  for (const clsVoice& voice : ReadCatalogue(document.DocumentElement(), "en", nullptr)) {
    std::cout << ' ' << Encoded(voice.Name);
  }
}

}  // namespace

int main(int count, char** arguments) {
  platform::EnterApartment();
  if (count == 2) LoadAndSay(arguments[1]);
  return 0;
}
