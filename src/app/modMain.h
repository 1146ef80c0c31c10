// Start-up: from the process's entry point to the window.
//
// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

namespace modMain {

/// The command that runs when the catalogue cannot be downloaded; empty for none.
extern std::string gFallbackCommand;

/// Called by a back end's entry point, which then runs the event loop. Shows the window, or, where
/// another instance of this program runs, brings that one's window to the front and shows nothing.
void Main();

/// The command of the PARVIX### switch: what follows the first "PARVIX" between "###"s. From
/// "PARVIX###C:\Tools\reader.exe /voices" it is "C:\Tools\reader.exe /voices". Empty when the
/// switch is absent or not spelt in capitals at the very start of a piece.
std::string FallbackCommandFrom(std::string_view arguments);

}  // namespace modMain
