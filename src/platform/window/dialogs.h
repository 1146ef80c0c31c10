// The one kind of message that the program shows.
//
// SPDX-License-Identifier: MIT
#pragma once

#include <string>

namespace platform {

/// A message with an exclamation icon and an OK button, modal to the program's window where one is
/// visible; written right to left where `rightToLeft` says so. Returns when the user has closed it;
/// events are handled meanwhile. Throws when it cannot be shown.
void ShowMessage(const std::string& text, const std::string& title, bool rightToLeft);

}  // namespace platform
