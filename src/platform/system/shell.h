// Folders that the system knows, and starting programs.
//
// SPDX-License-Identifier: MIT
#pragma once

#include <string>

namespace platform {

/// The path of a shell folder by its CSIDL: 26 for the user's roaming application data, 35 for the
/// application data of all users. Throws for one that the system cannot tell.
std::string SpecialFolder(int csidl);

/// Starts a command line in a normal, activated window and does not wait for it. It is split by the
/// Windows rules, without blanks and tabs before the program, and never handed to a command
/// interpreter. Throws when it cannot be started.
void RunCommandLine(const std::string& commandLine);

/// Starts a program with elevated rights and does not wait for it: full path, so that a planted
/// program of the same name is never started. Throws when it cannot be started or the user
/// declines.
void RunElevated(const std::string& file, const std::string& workingFolder);

}  // namespace platform
