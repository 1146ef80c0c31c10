// See modMain.h.
//
// SPDX-License-Identifier: MIT
#include "app/modMain.h"

#include <algorithm>
#include <iterator>
#include <memory>

#include "app/frmSelect.h"
#include "core/attempt.h"
#include "core/text.h"
#include "i18n/modI18N2.h"
#include "platform/system/program.h"

namespace modMain {

using core::Attempt;
using core::AttemptOr;

std::string gFallbackCommand;

namespace {

/// Lives from Main until the window is unloaded.
std::shared_ptr<frmSelect> theWindow;

/// By its title, the only thing that is known of the other process's window.
void ActivatePreviousInstance() {
  const std::string caption = modI18N2::GetText("frmSelect.Caption");
  Attempt([&] { platform::ActivateWindow(caption); });
}

}  // namespace

void Main() {
  Attempt([] { modI18N2::InitI18N("VelorVoiceSetup.Language.xml"); });
  if (AttemptOr(false, [] { return platform::IsPreviousInstanceRunning(); })) {
    ActivatePreviousInstance();
    return;
  }
  Attempt([] { gFallbackCommand = FallbackCommandFrom(platform::CommandLineArguments()); });
  Attempt([] {
    theWindow = std::make_shared<frmSelect>([] { theWindow.reset(); });
    theWindow->Show();
  });
}

std::string FallbackCommandFrom(std::string_view arguments) {
  if (core::UpperCase(arguments).find("PARVIX###") == std::string::npos) return "";
  const auto pieces = core::Split(arguments, "###");
  // The last piece is no marker, since nothing follows it.
  const auto last = std::prev(pieces.end());
  const auto marker = std::find(pieces.begin(), last, "PARVIX");
  return marker == last ? "" : *std::next(marker);
}

}  // namespace modMain
