// The running program: where it lies, what it is, how it was started.
//
// SPDX-License-Identifier: MIT
#pragma once

#include <string>

namespace platform {

/// The folder of the program file, joined with "\"; a drive's root ends in "\".
std::string ProgramFolder();
/// The program file's name without its extension.
std::string ProgramName();

/// From the program's version information.
std::string CompanyName();
std::string ProductName();
int MajorVersion();

/// The command line after the program's own path, as it was given: without the blanks before the
/// first argument, otherwise neither split nor trimmed. (On Linux the arguments joined by a blank.)
std::string CommandLineArguments();

/// Whether another process of this user runs this program file. The first caller becomes the
/// running instance until it ends, however it ends; there is no moment at which two are first.
bool IsPreviousInstanceRunning();

/// Brings the top-level window with exactly this title to the foreground, without waiting for it.
/// Throws when there is none, and for an empty title.
void ActivateWindow(const std::string& title);

}  // namespace platform
